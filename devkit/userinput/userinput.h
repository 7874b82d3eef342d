#pragma once

#include <QQuickItem>
#include <QQuickWindow>
#include <QString>
#include <QVector>

//! \file
//! \brief Acts as a user at the windows of this process: finds items, clicks and types.
//!
//! Finds items by their object names. GUI thread only.

namespace UserInput {

//! All visible items with that name, including `root`, from top to bottom on the screen.
QVector<QQuickItem*> findItems(QQuickItem* root, const QString& name);
//! The same in the window, including popups over its scene; none in a null window.
QVector<QQuickItem*> findItems(const QQuickWindow* window, const QString& name);
//! The same in all visible windows.
QVector<QQuickItem*> findItems(const QString& name);
//! The topmost item of findItems, or null.
QQuickItem* findItem(const QQuickWindow* window, const QString& name);
QQuickItem* findItem(const QString& name);
//! The row of a ListView; null if the view has no such row. findItems would also return a row that the view
//! has created in advance and not placed yet.
QQuickItem* rowAt(QQuickItem* view, int index);

//! Activates the window, as a window manager does with a new one. Returns false if it is not active in time.
bool activate(QQuickWindow* window);
//! Moves the mouse to the centre of the item and clicks. Both may delete the item.
void click(const QQuickItem* item);
//! Types any text, character by character, into the item with the focus.
void typeText(QQuickWindow* window, const QString& text);
//! Replaces the text of the item with the focus.
void replaceText(QQuickWindow* window, const QString& text);
//! Clicks the topmost item with that name and replaces its text.
void fillField(QQuickWindow* window, const QString& name, const QString& text);

} // namespace UserInput
