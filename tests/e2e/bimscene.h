#pragma once

#include <QMap>
#include <QQuickItem>
#include <QQuickView>
#include <QString>
#include <QStringList>

namespace E2e {

//! \brief The object that the dialog's pages know as `bimControl` and `editConext`.
class ImportControl : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isMainProject MEMBER isMainProject NOTIFY isMainProjectChanged)

public:
    Q_INVOKABLE bool checkBimProjValid(const QString& guid, bool mainProject);

    //! The calls, in order.
    QStringList questions;
    bool isImportAllowed = true;
    //! Set it before the scene is created.
    bool isMainProject = true;

Q_SIGNALS:
    void isMainProjectChanged();
};

//! \brief A host's scene with the plug-in's BIM dialog, in a separate window. Reads and uses the dialog as a
//!   user does.
//!
//! Needs an initialised plug-in. May be deleted before or after the plug-in's shutdown.
class BimScene
{
public:
    explicit BimScene(ImportControl& control);

    //! Shows the window, with the mouse beside the dialog.
    bool show();
    QQuickView* window() { return &m_window; }
    //! The dialog's root item, or null if it could not be created.
    QQuickItem* dialog() const;
    bool isDialogShown();

    QString title();
    QString message();
    //! The department that the closed box shows.
    QString department();
    //! The text in the search box.
    QString searched();
    //! The number of rows in the list, visible or not.
    int rowCount();
    //! The names of the visible rows, from top to bottom.
    QStringList names();
    //! All rows in order, read while scrolling from the top to the end: name, a space and the picture's file
    //! name. A missing picture has no file name; a picture that could not be loaded is "broken".
    QStringList scrollThroughRows();

    void clickPart(const QString& name);
    //! Clicks a button of the visible row with that name.
    void clickInRow(const QString& row, const QString& button);
    //! Opens the box and clicks a department in its tree. Returns false if the department does not appear.
    bool chooseDepartment(const QString& name);

private:
    QQuickItem* part(const QString& name);
    //! The rows whose centre is visible, by their position in the list.
    QMap<int, QQuickItem*> shownRows();
    void turnWheel(int steps);

    QQuickView m_window;
    QQuickItem* m_place; //!< the item for IPdsMgr::CreateBimDialog; owned by the window
};

} // namespace E2e
