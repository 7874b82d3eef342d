#pragma once

#include <QString>

namespace NelvoDevkit {

class UiDriver;

//! \brief The stations of the tour in an installation that updates itself from 1.0.0 to 1.0.1.
//!
//! They take several processes, since one of them is killed and another ends itself: tools/update-tour starts
//! them and looks at the files that they leave.
class UpdateTour
{
public:
    //! Does not own `ui`.
    explicit UpdateTour(UiDriver& ui);

    //! `stations` is one of the values in tour.h that name a part of the update.
    void walk(const QString& stations);

private:
    //! In the host's window, up to a download that does not go on: the process is to be killed then.
    void interrupted();
    //! In the login window, with a check at the start, up to the end of the process by itself.
    void resumed();
    //! In the host's window, with a check at the sign-in: there is nothing newer any more.
    void finished();
    //! The same in the host that the batch file starts, without options.
    void restarted();
    void seeNothingNewer();

    void signIn();
    void awaitBanner(const QString& title) const;
    void pictureHost();

    UiDriver& m_ui;
};

} // namespace NelvoDevkit
