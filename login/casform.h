#pragma once

#include <QByteArray>
#include <QString>

//! \file
//! \brief Reads the pages of the CAS sign-in service and creates the body of its form.

namespace NelvoPlugin {

//! The hidden values of the sign-in form, as the page contains them; missing values are empty.
struct CasFormValues {
    QString lt;        //!< login ticket
    QString execution; //!< flow execution key
    QString eventId;   //!< event name
};

//! Reads the hidden values of the form page. Returns false, with a warning, if the page is malformed after
//! its named entities have been removed, or if it exceeds 4 MiB, 1,000 different names, 250 levels, or 1,000
//! attributes of one element.
bool parseLoginArgs(const QByteArray& page, CasFormValues& values);

//! Whether the page that follows the form can be read, with the rules of parseLoginArgs. It cannot
//! distinguish success from rejection: a rejected password shows only when the request for the company list
//! fails.
bool parsePostResult(const QByteArray& page);

//! The lower-case hexadecimal MD5 of the password's UTF-8, as the form contains it.
QString passwordDigest(const QString& password);

//! The body of the form's POST. Does not encode `passwordText`.
QByteArray loginForm(const CasFormValues& values, const QString& userName, const QString& passwordText);

} // namespace NelvoPlugin
