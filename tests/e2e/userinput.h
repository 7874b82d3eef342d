#pragma once

#include <QQuickItem>
#include <QQuickWindow>
#include <QString>
#include <QVector>

//! \file
//! \brief What a person does with a window: look for things, click, type.

namespace E2e {

//! The visible item of that name in the window, also in what pops up over its scene, or null.
QQuickItem* findItem(const QQuickWindow* window, const QString& name);
//! All visible items of that name, in their order on the screen from top to bottom.
QVector<QQuickItem*> findItems(const QQuickWindow* window, const QString& name);
//! The same for `root` and what is below it.
QVector<QQuickItem*> findItems(QQuickItem* root, const QString& name);
//! The row of a ListView, null if it has none there. A row that the view makes for later is in no place yet
//! and would be found before its turn.
QQuickItem* rowAt(QQuickItem* view, int index);

//! Gives the window the keyboard, as a window manager does for a new one.
bool activate(QQuickWindow* window);
void click(QQuickWindow* window, const QQuickItem* item);
//! Types any text, character by character, into what has the focus.
void typeText(QQuickWindow* window, const QString& text);
//! Clicks into the field and replaces what it holds.
void fillField(QQuickWindow* window, const QString& name, const QString& text);

//! Fills the form of the login page and presses its button.
void submitForm(QQuickWindow* window, const QString& user, const QString& password, const QString& address);

//! The text of the error line, or an empty one if the line does not show.
QString shownError(const QQuickWindow* window);

} // namespace E2e
