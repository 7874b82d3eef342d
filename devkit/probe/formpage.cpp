#include "probe/formpage.h"

#include <QAbstractMessageHandler>
#include <QRegularExpression>
#include <QStringList>
#include <QXmlQuery>
#include <QXmlStreamReader>

namespace NelvoDevkit {

namespace {

//! The path to the section with the form's hidden inputs, as the plug-in reads it.
const QStringList& wayToSection()
{
    static const QStringList way{
        QStringLiteral("html"),
        QStringLiteral("body[@id='cas']"),
        QStringLiteral("div[@id='container']"),
        QStringLiteral("div[@id='content']"),
        QStringLiteral("div[@id='login']"),
        QStringLiteral("form"),
        QStringLiteral("section[@class='row btn-row']"),
    };
    return way;
}

//! Keeps Qt's messages about a page from the terminal.
class Silence final : public QAbstractMessageHandler
{
protected:
    void handleMessage(QtMsgType /*type*/, const QString& /*description*/, const QUrl& /*identifier*/,
                       const QSourceLocation& /*sourceLocation*/) override
    {}
};

class Page
{
public:
    explicit Page(const QString& text)
    {
        m_query.setMessageHandler(&m_silence);
        m_query.setFocus(text);
    }

    bool has(const QString& path)
    {
        return evaluate(QStringLiteral("exists(%1)").arg(path)) == QStringLiteral("true");
    }

private:
    QString evaluate(const QString& expression)
    {
        QString result;
        m_query.setQuery(expression);
        if (m_query.isValid())
            m_query.evaluateTo(&result);
        return result.trimmed();
    }

    Silence m_silence;
    QXmlQuery m_query;
};

//! The plug-in reads the page without its named entities.
QString withoutEntities(const QByteArray& page)
{
    static const QRegularExpression entity(QStringLiteral("&[0-9a-zA-Z]+;"));
    return QString::fromUtf8(page).remove(entity);
}

QString syntaxFault(const QString& text)
{
    QXmlStreamReader reader(text);
    while (!reader.atEnd())
        reader.readNext();
    if (!reader.hasError())
        return {};
    return QStringLiteral("the form page is not well-formed XML: line %1, column %2: %3")
        .arg(reader.lineNumber())
        .arg(reader.columnNumber())
        .arg(reader.errorString());
}

QString sectionFault(Page& page)
{
    if (page.has(QStringLiteral("*:html")) && !page.has(QStringLiteral("html")))
        return QStringLiteral("the form page puts its elements into an XML namespace (xmlns), where they are "
                              "not looked for");
    for (int steps = 1; steps <= wayToSection().size(); ++steps) {
        const QString path = QStringList(wayToSection().mid(0, steps)).join(QLatin1Char('/'));
        if (!page.has(path))
            return QStringLiteral("the form page lacks the section that is looked for, %1; it ends at %2")
                .arg(wayToSection().join(QLatin1Char('/')), path);
    }
    return {};
}

QString inputFault(Page& page)
{
    QStringList missing;
    for (const auto& name : {QStringLiteral("lt"), QStringLiteral("execution"), QStringLiteral("_eventId")}) {
        const QString path = wayToSection().join(QLatin1Char('/')) +
                             QStringLiteral("/input[@name='%1' and normalize-space(@value)]").arg(name);
        if (!page.has(path))
            missing.append(name);
    }
    if (missing.isEmpty())
        return {};
    return QStringLiteral("the form page's section lacks the hidden inputs %1, or their values")
        .arg(missing.join(QStringLiteral(", ")));
}

} // namespace

QString formPageFault(const QByteArray& page)
{
    const QString text = withoutEntities(page);
    QString fault = syntaxFault(text);
    if (!fault.isEmpty())
        return fault;
    Page read(text);
    fault = sectionFault(read);
    return fault.isEmpty() ? inputFault(read) : fault;
}

} // namespace NelvoDevkit
