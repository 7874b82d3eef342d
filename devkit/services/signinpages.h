#pragma once

#include <QByteArray>
#include <QString>

namespace NelvoDevkit {

//! \brief The hidden inputs of a form page.
struct FormValues {
    QByteArray ticket;    //!< the login ticket, "lt"
    QByteArray execution; //!< the flow execution key
};

//! The sign-in form. Shows a non-empty `message` as an error.
QByteArray formPage(const FormValues& values, const QString& message = {});
//! The page after a successful sign-in.
QByteArray successPage(const QString& user);

} // namespace NelvoDevkit
