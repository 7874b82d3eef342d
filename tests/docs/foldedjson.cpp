#include "tests/docs/foldedjson.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

namespace Docs {

namespace {

constexpr int LineLength = 108;
constexpr int LongList = 5;
constexpr int RowsOfALongList = 2;

QString scalarText(const QJsonValue& value)
{
    const QByteArray inList = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(inList.mid(1).chopped(1));
}

QString folded(const QJsonValue& value, int indent);

//! The texts of the members of an object or of the rows of a list, for an indentation by `indent` spaces.
QStringList parts(const QJsonValue& value, int indent)
{
    QStringList texts;
    const QJsonObject object = value.toObject();
    for (auto member = object.begin(); member != object.end(); ++member)
        texts.append(scalarText(member.key()) + QStringLiteral(": ") + folded(*member, indent));

    const QJsonArray list = value.toArray();
    const bool isLong = list.size() > LongList;
    const int rows = isLong ? RowsOfALongList : list.size();
    for (int row = 0; row < rows; ++row)
        texts.append(folded(list.at(row), indent));
    if (isLong)
        texts.append(QStringLiteral("…"));
    return texts;
}

QString folded(const QJsonValue& value, int indent)
{
    if (!value.isObject() && !value.isArray())
        return scalarText(value);
    const QString open = value.isObject() ? QStringLiteral("{") : QStringLiteral("[");
    const QString close = value.isObject() ? QStringLiteral("}") : QStringLiteral("]");
    constexpr int step = 2;
    const QStringList texts = parts(value, indent + step);
    QString onOneLine = open + texts.join(QStringLiteral(", ")) + close;
    if (indent + onOneLine.size() <= LineLength && !onOneLine.contains(QLatin1Char('\n')))
        return onOneLine;
    const QString margin = QLatin1Char('\n') + QString(indent + step, QLatin1Char(' '));
    return open + margin + texts.join(QLatin1Char(',') + margin) + QLatin1Char('\n') +
           QString(indent, QLatin1Char(' ')) + close;
}

} // namespace

QString foldedJson(const QJsonValue& value)
{
    return folded(value, 0);
}

} // namespace Docs
