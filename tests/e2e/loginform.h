#pragma once

#include <QString>

class QQuickWindow;

namespace E2e {

//! Fills the form of the login page and presses its button.
void submitForm(QQuickWindow* window, const QString& user, const QString& password, const QString& address);

//! The text of the error line, or an empty one if the line does not show.
QString shownError(const QQuickWindow* window);

} // namespace E2e
