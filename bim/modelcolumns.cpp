#include "bim/modelcolumns.h"

#include <QJsonObject>
#include <QStringList>
#include <QVector>

namespace NelvoPlugin {

QVariantMap ModelColumns::columns() const
{
    const QStringList keys = m_models.first().toObject().keys();
    QVector<QStringList> texts(keys.size());
    QVector<QVector<qreal>> numbers(keys.size());
    for (const QJsonValue& model : m_models) {
        const QJsonObject fields = model.toObject();
        for (int key = 0; key < keys.size(); ++key) {
            const QJsonValue value = fields.value(keys.at(key));
            if (value.isString())
                texts[key].append(value.toString());
            else
                numbers[key].append(value.toDouble());
        }
    }
    QVariantMap columns;
    for (int key = 0; key < keys.size(); ++key) {
        columns.insert(keys.at(key), texts.at(key).isEmpty() ? QVariant::fromValue(numbers.at(key))
                                                             : QVariant(texts.at(key)));
    }
    return columns;
}

} // namespace NelvoPlugin
