#pragma once

#include "services/editorrecords.h"

#include <QVector>

class QJsonArray;

namespace NelvoDevkit {

//! \brief The models and drawings of an enterprise, in separate lists.
struct ModelLists {
    QVector<BimModel> models;
    QVector<BimModel> drawings;
};

//! `count` models and `count` drawings, always the same, spread over the departments in turn.
ModelLists generatedModels(int count, const QVector<QString>& departments);

//! The lists as the service sends them; they differ in the key of the name.
QJsonArray modelRows(const QVector<BimModel>& models);
QJsonArray drawingRows(const QVector<BimModel>& drawings);

} // namespace NelvoDevkit
