#pragma once

#include "tour/uidriver.h"

#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QString>

namespace NelvoDevkit {

//! \brief Access of a tour to the service simulator: its control path, and its editor service as another
//!   client of the enterprise 1001.
//!
//! Each operation throws Missed if a request fails or times out.
class TourSimulator
{
public:
    //! `readyFile` is the ready file of a running nelvo-services.
    TourSimulator(const UiDriver& ui, const QString& readyFile);

    QString signInUrl() const { return m_signInUrl; }

    //! The name of a scene project of the enterprise 1001; empty if there is none with that id.
    QString projectName(const QString& id);
    //! Names of the enterprise's scene projects, sorted.
    QStringList projectNames();
    //! The changes of a project's equipment bindings: "deletes", "batches", "elements".
    QJsonObject bindings(const QString& projectId);
    //! Names of the enterprise's units, each followed by its descendants.
    QStringList unitNames();
    //! Names of the enterprise's models, or only of those of one unit and its descendants.
    QStringList modelNames(const QString& unit = {});
    //! Names of the enterprise's drawings.
    QStringList drawingNames();

    //! Adds a fault; `query` is the query of the control path.
    void addFault(const QString& query);
    //! Adds a project, as another client.
    void addProject(const QString& id, const QString& name, const QString& departmentId);

private:
    QJsonArray projects();
    //! The editor service's data under that path.
    QJsonValue editorData(const QString& path);
    QByteArray exchange(const QByteArray& method, const QString& url, const QByteArray& body = {});

    const UiDriver& m_ui;
    QString m_signInUrl;
    QString m_editorUrl;
    QString m_controlUrl;
    QNetworkAccessManager m_network;
};

} // namespace NelvoDevkit
