#pragma once

#include <QNetworkAccessManager>
#include <QObject>
#include <QString>

#include <optional>

class QJsonObject;
class QUrl;

//! \brief The client of the update service: a network manager of its own, without the shared cookies.
//!
//! Its calls block until the service has answered or the time is up, and pump the events of their thread
//! meanwhile, all kinds of them, so they may come back into the caller. Redirects are not followed.
class CWebServer final : public QObject
{
    Q_OBJECT

public:
    explicit CWebServer(QObject* parent = nullptr);
    ~CWebServer() override;

    //! Sets the base address of the update service, scheme and host without a trailing slash.
    void setServerAddress(const QString& url);

    //! Asks for the latest release of a product, as postJson does. `token` and `productId` go into the
    //! address as they are; `version` is the one that the client claims to have.
    bool findLatest(const QString& token, const QString& productId, const QString& version,
                    const QJsonObject& body, QJsonObject& reply, int timeoutMs);

    //! Posts `body` to `url`. True if the service answered with an object that holds "data" and whose "code"
    //! is the number 200; `reply` is that object.
    //!
    //! Otherwise `reply` is the object that came, or if none did, one whose "message" tells why: that no
    //! answer came within `timeoutMs`, or the network's error text. An empty `reply` is expected. It stays
    //! empty if this client is deleted during the call, which then returns false at once.
    bool postJson(const QJsonObject& body, QJsonObject& reply, const QUrl& url, int timeoutMs);

    //! Made with the first call: one takes Qt several milliseconds, which the login window, whose context
    //! holds this client from the start, is not to wait for.
    std::optional<QNetworkAccessManager> manager;
    //! Base address of the update service; empty until a version check sets it.
    QString serverAddress;
};
