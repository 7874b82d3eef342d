#pragma once

#include <QNetworkAccessManager>
#include <QObject>
#include <QString>

#include <optional>

class QJsonObject;
class QUrl;

//! \brief The client of the update service: its own network manager, without the shared cookies.
//!
//! Its calls block until the service has replied or the time is up. Meanwhile they process all kinds of
//! events of their thread and may be re-entered. Redirects are not followed.
class CWebServer final : public QObject
{
    Q_OBJECT

public:
    explicit CWebServer(QObject* parent = nullptr);
    ~CWebServer() override;

    //! Sets the base address of the update service, scheme and host without a trailing slash.
    void setServerAddress(const QString& url);

    //! Requests the latest release of a product, as postJson does. `token` and `productId` become part of the
    //! address without encoding; `version` is the version that the client reports.
    bool findLatest(const QString& token, const QString& productId, const QString& version,
                    const QJsonObject& body, QJsonObject& reply, int timeoutMs);

    //! Posts `body` to `url`. Returns true if the reply is an object that contains "data" and whose "code" is
    //! the number 200; `reply` is that object.
    //!
    //! Otherwise `reply` is the received object. Without one it is an object whose "message" is the reason:
    //! no reply within `timeoutMs`, or the network's error text. Pass an empty `reply`. It stays empty if
    //! this client is deleted during the call, which then returns false at once.
    bool postJson(const QJsonObject& body, QJsonObject& reply, const QUrl& url, int timeoutMs);

    //! Created by the first call: creation takes Qt several milliseconds and would delay the login window,
    //! whose context contains this client from the start.
    std::optional<QNetworkAccessManager> manager;
    //! Base address of the update service; empty until a version check sets it.
    QString serverAddress;
};
