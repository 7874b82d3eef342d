#pragma once

#include "services/editorrecords.h"

#include <QVector>

class QJsonArray;

namespace NelvoDevkit {

//! \brief The models and drawings of an enterprise, each kind a list of its own.
struct ModelLists {
    QVector<BimModel> models;
    QVector<BimModel> drawings;
};

//! That many of each kind, the same ones every time, in turn for one department after the other.
ModelLists generatedModels(int count, const QVector<QString>& departments);

//! The lists as the service sends them, which differ in what they call a name.
QJsonArray modelRows(const QVector<BimModel>& models);
QJsonArray drawingRows(const QVector<BimModel>& drawings);

} // namespace NelvoDevkit
