#pragma once

#include <QByteArray>
#include <QString>

namespace NelvoDevkit {

//! \brief What the hidden inputs of a form page hold.
struct FormValues {
    QByteArray ticket;    //!< the login ticket, "lt"
    QByteArray execution; //!< the flow execution key
};

//! The sign-in form. A `message` that is not empty stands in it as an error.
QByteArray formPage(const FormValues& values, const QString& message = {});
//! The page that welcomes a user.
QByteArray successPage(const QString& user);

} // namespace NelvoDevkit
