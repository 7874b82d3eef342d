#pragma once

#include <QQuickItem>
#include <QQuickWindow>
#include <QString>
#include <QVector>

//! \file
//! \brief What a person does with the windows of this process: find things, click, type.
//!
//! Items are found by their object names. GUI thread only.

namespace UserInput {

//! All visible items of that name, `root` included, from top to bottom on the screen.
QVector<QQuickItem*> findItems(QQuickItem* root, const QString& name);
//! The same in the window, also in what pops up over its scene; none in a null window.
QVector<QQuickItem*> findItems(const QQuickWindow* window, const QString& name);
//! The same in all visible windows.
QVector<QQuickItem*> findItems(const QString& name);
//! The topmost item of findItems, or null.
QQuickItem* findItem(const QQuickWindow* window, const QString& name);
QQuickItem* findItem(const QString& name);
//! The row of a ListView; null if the view has none there. findItems would also return a row that the view
//! has made in advance and not placed yet.
QQuickItem* rowAt(QQuickItem* view, int index);

//! Activates the window, as a window manager does with a new one. False if it does not become active in time.
bool activate(QQuickWindow* window);
//! Moves the mouse to the middle of the item and clicks. The item may be deleted by either.
void click(const QQuickItem* item);
//! Types any text, character by character, into the item with the focus.
void typeText(QQuickWindow* window, const QString& text);
//! Replaces the text of the item with the focus.
void replaceText(QQuickWindow* window, const QString& text);
//! Clicks the topmost item of that name and replaces its text.
void fillField(QQuickWindow* window, const QString& name, const QString& text);

} // namespace UserInput
