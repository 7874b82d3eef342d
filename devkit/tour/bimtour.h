#pragma once

#include <QString>
#include <QStringList>

class QQuickItem;
class QUrl;

namespace NelvoDevkit {

class TourSimulator;
class UiDriver;

//! \brief The stations of the tour with BIM models: the plug-in's dialogs, the host's imports, the component
//!   panel, PDS projects and the web channel. The simulator provides the expected content of the lists.
class BimTour
{
public:
    //! Owns none of its arguments.
    BimTour(UiDriver& ui, TourSimulator& simulator);

    //! Begins and ends with the host's window, signed in as `zhangwei`, with another project than a main
    //! project.
    void walk();

private:
    void bimDialog();
    void departments();
    void departmentChosen();
    void search();
    void download();
    void downloaded();
    void secondImport();
    void mainProject();
    void conversion();
    void dwgDialog();
    void componentPanel();
    void webView();
    void deviceCleared();
    void pdsProjects();
    void webChannel();

    void visit(const QString& station, void (BimTour::*what)());
    void awaitRows(const QStringList& names) const;
    void pressInRow(const QString& button, const QString& model) const;
    void awaitModels(const QStringList& names) const;
    void awaitFinished(int count) const;
    QStringList modelData(const QByteArray& role) const;
    void awaitText(const QString& item, const QString& text) const;
    void lookAround(const QUrl& page) const;
    void takePicture() const;

    UiDriver& m_ui;
    TourSimulator& m_simulator;
};

} // namespace NelvoDevkit
