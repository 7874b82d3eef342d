#pragma once

#include <QString>

namespace NelvoDevkit {

class UiDriver;

//! \brief The stations of the tour in an installation that updates itself from 1.0.0 to 1.0.1.
//!
//! They need several processes, because one of them is killed and another ends itself: tools/update-tour
//! starts them and checks the files that they leave.
class UpdateTour
{
public:
    //! Does not own `ui`.
    explicit UpdateTour(UiDriver& ui);

    //! `stations` is a value of tour.h for a part of the update.
    void walk(const QString& stations);

private:
    //! In the host's window, until the download stops; tools/update-tour then kills the process.
    void interrupted();
    //! In the login window, with a check at the start, until the process ends itself.
    void resumed();
    //! In the host's window, with a check at the sign-in that finds no newer release.
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
