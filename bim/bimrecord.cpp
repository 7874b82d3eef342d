#include "bim/bimrecord.h"

#include <QHash>
#include <QJsonValue>
#include <QString>

#include <cmath>

namespace NelvoPlugin {

namespace {

//! A record with all its keys. Copying it and setting the values takes half the time of inserting the keys.
QJsonObject blankRecord(const QString& image, const QString& label)
{
    return {{QStringLiteral("deptId"), 0},         {QStringLiteral("guid"), 0},
            {QStringLiteral("name"), 0},           {QStringLiteral("ppid"), 0},
            {QStringLiteral("profession"), 0},     {QStringLiteral("profImg"), image},
            {QStringLiteral("profTipText"), label}};
}

QJsonObject blankBimRecord(const QString& imageSuffix, const QString& label)
{
    const auto image = QStringLiteral("qrc:/NelvoPlugin/qmls/images/profession_%1.png").arg(imageSuffix);
    QJsonObject made = blankRecord(image, label);
    made.insert(QLatin1String("size"), 0);
    return made;
}

QJsonObject numbered(int type, const QString& label)
{
    return blankBimRecord(QString::number(type), label);
}

//! The image and label of the program that created a model. 6 and 8 have neither. This is intentional.
const QJsonObject& blankBimRecord(int type)
{
    static const QHash<int, QJsonObject> known{
        {1, numbered(1, QStringLiteral("土建预算"))},  {2, numbered(2, QStringLiteral("安装预算"))},
        {3, numbered(3, QStringLiteral("钢筋预算"))},  {4, numbered(4, QStringLiteral("Revit"))},
        {5, numbered(5, QStringLiteral("Tekla"))},     {7, numbered(7, QStringLiteral("Dorvi客户端"))},
        {9, numbered(9, QStringLiteral("场布预算"))},  {10, numbered(10, QStringLiteral("Civil3D"))},
        {11, numbered(11, QStringLiteral("Bentley"))}, {12, numbered(12, QStringLiteral("Rhino"))},
    };
    static const QJsonObject other = blankBimRecord(QStringLiteral("other"), QStringLiteral("其他类型"));
    const auto found = known.constFind(type);
    return found == known.constEnd() ? other : *found;
}

//! The value itself: Qt copies it in two thirds of the time of a value that is created from its text.
QJsonValue text(const QJsonObject& row, QLatin1String key)
{
    const QJsonValue value = row.value(key);
    return value.isString() ? value : QJsonValue(QLatin1String(""));
}

//! Like QJsonValue::toInt, but for every integer that JSON represents exactly: models exceed 2 GiB.
qint64 wholeNumber(const QJsonObject& row, QLatin1String key)
{
    constexpr double exactLimit = 9007199254740992.0;
    const double number = row.value(key).toDouble();
    return std::trunc(number) == number && std::abs(number) <= exactLimit ? static_cast<qint64>(number) : 0;
}

//! Sets the fields that both kinds of rows have.
void fill(QJsonObject& record, const QJsonObject& row, QLatin1String nameKey)
{
    record.insert(QLatin1String("deptId"), text(row, QLatin1String("deptId")));
    record.insert(QLatin1String("guid"), text(row, QLatin1String("nelvo3dId")));
    record.insert(QLatin1String("name"), text(row, nameKey));
    record.insert(QLatin1String("ppid"), wholeNumber(row, QLatin1String("ppid")));
    record.insert(QLatin1String("profession"), wholeNumber(row, QLatin1String("projType")));
}

} // namespace

QJsonObject bimRecord(const QJsonObject& row)
{
    QJsonObject made = blankBimRecord(row.value(QLatin1String("projType")).toInt());
    fill(made, row, QLatin1String("ppName"));
    made.insert(QLatin1String("size"), wholeNumber(row, QLatin1String("projectSize")));
    return made;
}

QJsonObject dwgRecord(const QJsonObject& row)
{
    static const QJsonObject blank = blankRecord(QLatin1String(""), QStringLiteral("DWG"));
    QJsonObject made = blank;
    fill(made, row, QLatin1String("dwgName"));
    return made;
}

} // namespace NelvoPlugin
