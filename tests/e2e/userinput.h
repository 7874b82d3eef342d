#pragma once

#include <QQuickItem>
#include <QQuickView>
#include <QString>
#include <QVector>

//! \file
//! \brief What a person does with a window: look for things, click, type.

namespace E2e {

//! The visible item of that name below the window's root, or null.
QQuickItem* findItem(const QQuickView* window, const QString& name);
//! All visible items of that name, in their order on the screen from top to bottom.
QVector<QQuickItem*> findItems(const QQuickView* window, const QString& name);

//! Gives the window the keyboard, as a window manager does for a new one.
bool activate(QQuickView* window);
void click(QQuickView* window, const QQuickItem* item);
//! Types any text, character by character, into what has the focus.
void typeText(QQuickView* window, const QString& text);
//! Clicks into the field and replaces what it holds.
void fillField(QQuickView* window, const QString& name, const QString& text);

//! Fills the form of the login page and presses its button.
void submitForm(QQuickView* window, const QString& user, const QString& password, const QString& address);

//! The text of the error line, or an empty one if the line does not show.
QString shownError(const QQuickView* window);

} // namespace E2e
