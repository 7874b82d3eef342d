#include "login/casform.h"

#include <QCryptographicHash>
#include <QDebug>
#include <QRegularExpression>
#include <QSet>
#include <QXmlQuery>
#include <QXmlStreamReader>

namespace NelvoPlugin {

namespace {

constexpr int MaxPageSize = 4 * 1024 * 1024;
constexpr int MaxNames = 1000;
constexpr int MaxDepth = 250;
constexpr int MaxAttributes = 1000;

//! Whether a tag seems to have too many attributes. Runs before a parser reads the page, because parsers
//! compare each attribute of a tag with all others.
bool hasCrowdedTag(const QString& page)
{
    // A name contains none of these, so the scan soon leaves comments, scripts and the like.
    static const QString noName = QStringLiteral(">!?;,(){}[]");
    bool inTag = false;
    QChar quote;
    int values = 0;
    for (const QChar c : page) {
        if (c == QLatin1Char('<')) { // no value contains it
            inTag = true;
            quote = QChar();
            values = 0;
        } else if (!inTag || !quote.isNull()) {
            if (c == quote)
                quote = QChar();
        } else if (c == QLatin1Char('"') || c == QLatin1Char('\'')) {
            quote = c;
            if (++values > MaxAttributes)
                return true;
        } else if (noName.contains(c)) {
            inTag = false;
        }
    }
    return false;
}

//! Whether the query can process the page. Too many names make it read wrong values or crash, too many levels
//! exhaust the stack or the memory, and too many attributes keep it busy for minutes.
bool isBearable(const QString& page)
{
    if (hasCrowdedTag(page))
        return false;
    // Reads the same bytes as the query. Stops at malformed XML, which the query rejects.
    QXmlStreamReader reader(page.toUtf8());
    QSet<QString> names;
    int depth = 0;
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartElement:
            ++depth;
            names.insert(reader.name().toString());
            for (const QXmlStreamAttribute& attribute : reader.attributes())
                names.insert(attribute.name().toString());
            break;
        case QXmlStreamReader::EndElement:
            --depth;
            break;
        case QXmlStreamReader::ProcessingInstruction:
            names.insert(reader.processingInstructionTarget().toString());
            break;
        default:
            break;
        }
        if (depth > MaxDepth || names.size() > MaxNames || reader.attributes().size() > MaxAttributes)
            return false;
    }
    return true;
}

//! Passes the page without its named entities to the query: XML parsers do not know them. Returns false, with
//! a warning, if the query cannot process the page.
bool setPage(QXmlQuery& query, const QByteArray& page)
{
    static const QRegularExpression entity(QStringLiteral("&[0-9a-zA-Z]+;"));
    if (page.size() <= MaxPageSize) {
        const QString text = QString::fromUtf8(page).remove(entity);
        if (isBearable(text)) {
            query.setFocus(text);
            return true;
        }
    }
    qWarning("query error");
    return false;
}

bool evaluate(QXmlQuery& query, const QString& expression, QString& result)
{
    query.setQuery(expression);
    // Fails without a page to ask. In every page that could be read, these expressions have a result.
    if (query.evaluateTo(&result))
        return true;
    qWarning("query error");
    return false;
}

//! The value of a hidden input of the form's button row, empty if the input is missing.
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
    if (!setPage(form, page))
        return false;
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
    if (!setPage(result, page))
        return false;
    QString message;
    // "class" without "@" is intentional: it names a child element. So the query finds nothing in any page,
    // and fails only if the page is malformed.
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

    // Each arg() also scans the text that the previous one inserted. So an escape in a user name that reads
    // as place marker 2 is replaced by the password. This is intentional.
    QString tail = QStringLiteral("&submit=%25E7%2599%25BB%25E5%25BD%2595");
    tail += QStringLiteral("&username=%1&password=%2").arg(user).arg(passwordText);
    const QString head = QStringLiteral("%5FeventId=%1&execution=%2&lt=%3&productId=86")
                             .arg(values.eventId.trimmed())
                             .arg(values.execution.trimmed())
                             .arg(ticket);
    return (head + tail).toUtf8();
}

} // namespace NelvoPlugin
