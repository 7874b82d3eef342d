#pragma once

#include <QByteArray>
#include <QString>

//! \file
//! \brief The pages of the CAS sign-in service and the form that answers them.

namespace NelvoPlugin {

//! The hidden values of the sign-in form, as they stand in the page; absent ones are empty.
struct CasFormValues {
    QString lt;        //!< login ticket
    QString execution; //!< flow execution key
    QString eventId;   //!< event name
};

//! Reads the hidden values out of the form page. False, with a warning, if the page cannot be read: if it
//! is not well-formed once its named entities are gone, or if it has more than 4 MiB, 1,000 different names,
//! 250 levels or 1,000 attributes of one element.
bool parseLoginArgs(const QByteArray& page, CasFormValues& values);

//! Whether the page that answers the form can be read, as for parseLoginArgs. It does not tell a welcome from
//! a rejection: a rejected password is noticed only when the company list does not come.
bool parsePostResult(const QByteArray& page);

//! The lower-case hexadecimal MD5 of the UTF-8 of `password`, as the form carries it.
QString passwordDigest(const QString& password);

//! The body of the form's POST. `passwordText` goes in as it stands.
QByteArray loginForm(const CasFormValues& values, const QString& userName, const QString& passwordText);

} // namespace NelvoPlugin
