#pragma once

#include <QQuickItem>
#include <QQuickView>
#include <QString>

//! \file
//! \brief Access of a host to the update: the object that the login window's pages know as `updater`, and the
//!   visible page.

namespace E2e {

//! The login window among all windows of the application, or null.
QQuickView* loginWindow();
//! The object that its pages know as `updater`, or null.
QObject* updater();
//! Requests the latest release. Returns when the check has ended.
void checkVersion(const QString& url, const QString& token, const QString& product);
//! Calls an operation of the updater without arguments, such as "download".
bool callUpdater(const char* operation);

//! The name of the visible page, such as "updateComp"; empty if there is none.
QString shownPage();
//! The visible part of that page, not of a page that is being replaced; null if there is none.
QQuickItem* pagePart(const QString& name);
//! The text of such a part.
QString pageText(const QString& name);

} // namespace E2e
