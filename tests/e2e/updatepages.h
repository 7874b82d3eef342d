#pragma once

#include <QQuickItem>
#include <QQuickView>
#include <QString>

//! \file
//! \brief The update as a host reaches it: what the pages of the login window know as `updater`, and the page
//! that shows.

namespace E2e {

//! The login window among all windows of the application, or null.
QQuickView* loginWindow();
//! What its pages know as `updater`, or null.
QObject* updater();
//! Asks for the latest release. Returns when there is an answer.
void checkVersion(const QString& url, const QString& token, const QString& product);
//! Calls an operation of the updater that takes nothing, such as "download".
bool callUpdater(const char* operation);

//! The name of the page that shows, such as "updateComp"; empty if there is none.
QString shownPage();
//! The visible part of that page, not of one that is about to go; null if there is none.
QQuickItem* pagePart(const QString& name);
//! The text of such a part.
QString pageText(const QString& name);

} // namespace E2e
