#pragma once

#include <QString>

class QQuickWindow;

namespace E2e {

//! Fills in the form of the login page and presses its button.
void submitForm(QQuickWindow* window, const QString& user, const QString& password, const QString& address);

//! The text of the error line; empty if the line is hidden.
QString shownError(const QQuickWindow* window);

} // namespace E2e
