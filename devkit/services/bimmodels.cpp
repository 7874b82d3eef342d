#include "services/bimmodels.h"

#include <QJsonArray>
#include <QJsonObject>

namespace NelvoDevkit {

namespace {

//! Ends with the number, so that a row can be recognised by its id.
QString generatedGuid(const QString& head, int number)
{
    return head + QStringLiteral("%1").arg(number, 12, 16, QLatin1Char('0'));
}

//! All professions in turn, including models without one and an unknown one.
int generatedProfession(int number)
{
    constexpr int professions = 13;
    return 1 + number % professions;
}

BimModel generatedModel(int number)
{
    return {generatedGuid(QStringLiteral("00000000-0000-4000-8000-"), number),
            QStringLiteral("生成的模型 %1").arg(number),
            {},
            number,
            generatedProfession(number),
            number * qint64{1024}};
}

BimModel generatedDrawing(int number)
{
    BimModel drawing = generatedModel(number);
    drawing.guid = generatedGuid(QStringLiteral("00000000-0000-4000-9000-"), number);
    drawing.name = QStringLiteral("生成的图纸 %1").arg(number);
    return drawing;
}

QJsonArray rows(const QVector<BimModel>& list, const QString& nameKey)
{
    QJsonArray array;
    for (const BimModel& model : list) {
        array.append(QJsonObject{{QStringLiteral("nelvo3dId"), model.guid},
                                 {nameKey, model.name},
                                 {QStringLiteral("deptId"), model.deptId},
                                 {QStringLiteral("ppid"), model.ppid},
                                 {QStringLiteral("projType"), model.profession},
                                 {QStringLiteral("projectSize"), model.size}});
    }
    return array;
}

} // namespace

ModelLists generatedModels(int count, const QVector<QString>& departments)
{
    ModelLists lists;
    lists.models.reserve(count);
    lists.drawings.reserve(count);
    for (int number = 0; number < count; ++number) {
        lists.models.append(generatedModel(number));
        lists.drawings.append(generatedDrawing(number));
        if (!departments.isEmpty()) {
            lists.models.last().deptId = departments.at(number % departments.size());
            lists.drawings.last().deptId = lists.models.last().deptId;
        }
    }
    return lists;
}

QJsonArray modelRows(const QVector<BimModel>& models)
{
    return rows(models, QStringLiteral("ppName"));
}

QJsonArray drawingRows(const QVector<BimModel>& drawings)
{
    return rows(drawings, QStringLiteral("dwgName"));
}

} // namespace NelvoDevkit
