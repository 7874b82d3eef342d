#pragma once

#include <QMap>
#include <QQuickItem>
#include <QQuickView>
#include <QString>
#include <QStringList>

namespace E2e {

//! \brief What the dialog's pages know as `bimControl` and `editConext`.
class ImportControl : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isMainProject MEMBER isMainProject NOTIFY isMainProjectChanged)

public:
    Q_INVOKABLE bool checkBimProjValid(const QString& guid, bool mainProject);

    //! What was asked, in order.
    QStringList questions;
    bool isImportAllowed = true;
    //! Before the scene is made.
    bool isMainProject = true;

Q_SIGNALS:
    void isMainProjectChanged();
};

//! \brief The scene of a host with the plug-in's BIM dialog, in a window of its own. What a person sees of
//! the dialog, and what a person does with it.
//!
//! Needs an initialised plug-in. May go before or after the plug-in is shut down.
class BimScene
{
public:
    explicit BimScene(ImportControl& control);

    //! Shows the window, with the mouse beside the dialog.
    bool show();
    QQuickView* window() { return &m_window; }
    //! The dialog's root item, or null if it couldn't be built.
    QQuickItem* dialog() const;
    bool isDialogShown();

    QString title();
    QString message();
    //! The department that the closed box shows.
    QString department();
    //! What is typed into the search box.
    QString searched();
    //! How many rows the list has, shown or not.
    int rowCount();
    //! The names of the rows that show, from top to bottom.
    QStringList names();
    //! Of all rows, in order, by scrolling from the top to the end: name, a blank and the picture's file
    //! name. A picture that isn't there has no file name, and one that couldn't be loaded is "broken".
    QStringList scrollThroughRows();

    void clickPart(const QString& name);
    //! Clicks a button of the row with that name, which has to show.
    void clickInRow(const QString& row, const QString& button);
    //! Opens the box and clicks a department in its tree. False if it doesn't turn up.
    bool chooseDepartment(const QString& name);

private:
    QQuickItem* part(const QString& name);
    //! The rows whose middle shows, by their place in the list.
    QMap<int, QQuickItem*> shownRows();
    void turnWheel(int steps);

    QQuickView m_window;
    QQuickItem* m_place; //!< the item that the plug-in gets; the window's
};

} // namespace E2e
