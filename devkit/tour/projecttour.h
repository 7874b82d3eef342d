#pragma once

#include <QString>
#include <QStringList>

namespace NelvoDevkit {

class TourSimulator;
class UiDriver;

//! \brief The stations of the tour with the enterprise's projects, up to the push-out by a second host. The
//!   simulator provides the results of uploads.
class ProjectTour
{
public:
    //! Owns none of its arguments.
    ProjectTour(UiDriver& ui, TourSimulator& simulator);

    //! Begins and ends with the host's window, signed in as `zhangwei`.
    void walk();

private:
    void organisationTree();
    void projects();
    void newProject();
    void uploadedProject();
    void renamedProject();
    void deviceBindings();
    void failure();
    void refresh();
    void smallestWindow();
    void pushedOut();
    void signedInAgain();

    void visit(const QString& station, void (ProjectTour::*what)());
    void selectProject(const QString& name) const;
    void createProject(const QString& name) const;
    void awaitProjects(const QString& list, const QStringList& names) const;
    void awaitQuiet() const;
    void takePicture() const;

    UiDriver& m_ui;
    TourSimulator& m_simulator;
};

} // namespace NelvoDevkit
