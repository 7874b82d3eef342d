#include "login/casform.h"

#include <QCryptographicHash>
#include <QDebug>
#include <QRegularExpression>
#include <QXmlQuery>

namespace NelvoPlugin {

namespace {

//! The page as text without its named entities, which no XML parser would know.
QString withoutEntities(const QByteArray& page)
{
    static const QRegularExpression entity(QStringLiteral("&[0-9a-zA-Z]+;"));
    return QString::fromUtf8(page).remove(entity);
}

bool evaluate(QXmlQuery& query, const QString& expression, QString& result)
{
    query.setQuery(expression);
    if (!query.isValid()) {
        qWarning("query error");
        return false;
    }
    if (!query.evaluateTo(&result)) {
        qWarning("evaluateTo error");
        return false;
    }
    return true;
}

//! The value of a hidden input of the form's button row, empty if there is none.
QString inputValue(QXmlQuery& row, const QString& name)
{
    QString value;
    row.setQuery(QStringLiteral("section/input[@name='%1']/@value/string()").arg(name));
    row.evaluateTo(&value);
    return value;
}

} // namespace

bool parseLoginArgs(const QByteArray& page, CasFormValues& values)
{
    QXmlQuery form;
    form.setFocus(withoutEntities(page));
    QString row;
    if (!evaluate(form,
                  QStringLiteral("html/body[@id='cas']/div[@id='container']/div[@id='content']"
                                 "/div[@id='login']/form/section[@class='row btn-row']"),
                  row)) {
        return false;
    }
    QXmlQuery inputs;
    inputs.setFocus(row);
    values.lt = inputValue(inputs, QStringLiteral("lt"));
    values.execution = inputValue(inputs, QStringLiteral("execution"));
    values.eventId = inputValue(inputs, QStringLiteral("_eventId"));
    return true;
}

bool parsePostResult(const QByteArray& page)
{
    QXmlQuery result;
    result.setFocus(withoutEntities(page));
    QString message;
    // "class" without "@" is meant: it asks for a child element, so the query finds nothing in any page
    // and fails only on one that is not well-formed.
    return evaluate(result, QStringLiteral("html/body[@id='cas']/div[@id='msg' and class='success']"),
                    message);
}

QString passwordDigest(const QString& password)
{
    return QString::fromLatin1(QCryptographicHash::hash(password.toUtf8(), QCryptographicHash::Md5).toHex());
}

QByteArray loginForm(const CasFormValues& values, const QString& userName, const QString& passwordText)
{
    const QString ticket = QString::fromLatin1(values.lt.trimmed().toUtf8().toPercentEncoding({}, "-."));
    const QString user = QString::fromLatin1(userName.toUtf8().toPercentEncoding());

    // The arguments are filled in one after the other, and each pass scans what the one before it put in.
    // So an escape in a user name that reads as place marker 2 is replaced by the password; that is meant.
    QString tail = QStringLiteral("&submit=%25E7%2599%25BB%25E5%25BD%2595");
    tail += QStringLiteral("&username=%1&password=%2").arg(user).arg(passwordText);
    const QString head = QStringLiteral("%5FeventId=%1&execution=%2&lt=%3&productId=86")
                             .arg(values.eventId.trimmed())
                             .arg(values.execution.trimmed())
                             .arg(ticket);
    return (head + tail).toUtf8();
}

} // namespace NelvoPlugin
