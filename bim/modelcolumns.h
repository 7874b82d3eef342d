#pragma once

#include <QJsonArray>
#include <QObject>
#include <QVariantMap>

namespace NelvoPlugin {

//! \brief The models of the dialog's list, as one list of values for each key.
//!
//! The page creates its rows from these lists, in about a third of the time in which Qt converts the same
//! models from a QJsonArray to JavaScript.
class ModelColumns final : public QObject
{
    Q_OBJECT
    //! The values by key, in the order of the models. Empty if there are no models.
    Q_PROPERTY(QVariantMap columns READ columns NOTIFY columnsChanged)

public:
    //! All models have the keys of the first one, and the values of a key have one type: text or number. The
    //! array must exist as long as this object.
    ModelColumns(const QJsonArray& models, QObject* parent) : QObject(parent), m_models(models) {}

    QVariantMap columns() const;

Q_SIGNALS:
    void columnsChanged();

private:
    const QJsonArray& m_models;
};

} // namespace NelvoPlugin
