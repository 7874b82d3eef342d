#include "bim/bimrecord.h"

#include <QHash>
#include <QJsonValue>
#include <QString>

#include <cmath>

namespace NelvoPlugin {

namespace {

//! The program that a model comes from.
struct Profession {
    QString image;
    QString label;
};

QString imageUrl(const QString& suffix)
{
    return QStringLiteral("qrc:/NelvoPlugin/qmls/images/profession_%1.png").arg(suffix);
}

Profession numbered(int type, const QString& label)
{
    return {imageUrl(QString::number(type)), label};
}

//! 6 and 8 have neither an image nor a label of their own, and that is meant.
const Profession& profession(int type)
{
    static const QHash<int, Profession> known{
        {1, numbered(1, QStringLiteral("土建预算"))},  {2, numbered(2, QStringLiteral("安装预算"))},
        {3, numbered(3, QStringLiteral("钢筋预算"))},  {4, numbered(4, QStringLiteral("Revit"))},
        {5, numbered(5, QStringLiteral("Tekla"))},     {7, numbered(7, QStringLiteral("Dorvi客户端"))},
        {9, numbered(9, QStringLiteral("场布预算"))},  {10, numbered(10, QStringLiteral("Civil3D"))},
        {11, numbered(11, QStringLiteral("Bentley"))}, {12, numbered(12, QStringLiteral("Rhino"))},
    };
    static const Profession other{imageUrl(QStringLiteral("other")), QStringLiteral("其他类型")};
    const auto found = known.constFind(type);
    return found == known.constEnd() ? other : *found;
}

QString text(const QJsonObject& row, QLatin1String key)
{
    return row.value(key).toString();
}

//! As QJsonValue::toInt, but for every whole number that JSON carries exactly: models pass 2 GiB.
qint64 wholeNumber(const QJsonObject& row, QLatin1String key)
{
    constexpr double ExactLimit = 9007199254740992.0;
    const double number = row.value(key).toDouble();
    return std::trunc(number) == number && std::abs(number) <= ExactLimit ? static_cast<qint64>(number) : 0;
}

//! What both kinds of row have.
QJsonObject record(const QJsonObject& row, QLatin1String nameKey)
{
    return {{QStringLiteral("deptId"), text(row, QLatin1String("deptId"))},
            {QStringLiteral("guid"), text(row, QLatin1String("nelvo3dId"))},
            {QStringLiteral("name"), text(row, nameKey)},
            {QStringLiteral("ppid"), wholeNumber(row, QLatin1String("ppid"))},
            {QStringLiteral("profession"), wholeNumber(row, QLatin1String("projType"))}};
}

} // namespace

QJsonObject bimRecord(const QJsonObject& row)
{
    QJsonObject made = record(row, QLatin1String("ppName"));
    made.insert(QLatin1String("size"), wholeNumber(row, QLatin1String("projectSize")));
    const Profession& source = profession(row.value(QLatin1String("projType")).toInt());
    made.insert(QLatin1String("profImg"), source.image);
    made.insert(QLatin1String("profTipText"), source.label);
    return made;
}

QJsonObject dwgRecord(const QJsonObject& row)
{
    QJsonObject made = record(row, QLatin1String("dwgName"));
    made.insert(QLatin1String("profImg"), QString(QLatin1String("")));
    made.insert(QLatin1String("profTipText"), QStringLiteral("DWG"));
    return made;
}

} // namespace NelvoPlugin
