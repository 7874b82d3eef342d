#include "services/controlparameters.h"

#include <QUrlQuery>

namespace NelvoDevkit {

Parameters readParameters(const HttpRequest& request, const QStringList& names)
{
    Parameters parameters;
    const QUrlQuery query(QString::fromUtf8(request.target.mid(request.path().size() + 1)));
    const auto items = query.queryItems(QUrl::FullyDecoded);
    for (const auto& [name, value] : items) {
        if (!names.contains(name)) {
            throw ParameterError{
                QStringLiteral("unknown parameter \"%1\"; there are %2").arg(name, listed(names))};
        }
        if (parameters.contains(name))
            throw ParameterError{QStringLiteral("parameter \"%1\" stands there twice").arg(name)};
        parameters.insert(name, value);
    }
    return parameters;
}

QString readText(const Parameters& parameters, const QString& name, const QString& what)
{
    QString text = parameters.value(name);
    if (text.isEmpty())
        throw ParameterError{QStringLiteral("parameter \"%1\" must be %2").arg(name, what)};
    return text;
}

qint64 readNumber(const QString& name, const QString& text, qint64 least, qint64 most, const QString& what)
{
    bool isNumber = false;
    const qint64 number = text.toLongLong(&isNumber);
    if (!isNumber || number < least || number > most) {
        throw ParameterError{
            QStringLiteral("parameter \"%1\" must be %2 from %3 to %4").arg(name, what).arg(least).arg(most)};
    }
    return number;
}

bool readFlag(const Parameters& parameters, const QString& name)
{
    const QString text = parameters.value(name);
    if (!text.isEmpty() && text != QLatin1String("0") && text != QLatin1String("1"))
        throw ParameterError{QStringLiteral("parameter \"%1\" must be 0 or 1").arg(name)};
    return text == QLatin1String("1");
}

QString listed(const QStringList& names)
{
    return names.join(QStringLiteral(", "));
}

} // namespace NelvoDevkit
