#include "tour/chromium.h"

#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QProcessEnvironment>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>

#include <memory>

namespace NelvoDevkit {

namespace {

constexpr int PatienceMs = 30000;

QString program()
{
    return QStandardPaths::findExecutable(QStringLiteral("chromium"));
}

} // namespace

Chromium::~Chromium()
{
    m_socket.abort();
    m_process.terminate();
    if (!m_process.waitForFinished(PatienceMs)) {
        m_process.kill();
        m_process.waitForFinished(PatienceMs);
    }
    // The browser's helper processes may still write there for a moment.
    if (!QTest::qWaitFor([this] { return m_profile.remove(); }, PatienceMs))
        qWarning("%s stays behind", qPrintable(m_profile.path()));
}

bool Chromium::isInstalled()
{
    return !program().isEmpty();
}

bool Chromium::open(const QUrl& url)
{
    return start(url) && attach(url);
}

QString Chromium::error() const
{
    return m_error + QString::fromLocal8Bit(m_log);
}

bool Chromium::start(const QUrl& url)
{
    auto environment = QProcessEnvironment::systemEnvironment();
    // All its files are deleted with the profile.
    environment.insert(QStringLiteral("TMPDIR"), m_profile.path());
    m_process.setProcessEnvironment(environment);
    m_process.setStandardOutputFile(QProcess::nullDevice());
    m_process.start(program(), {QStringLiteral("--headless"), QStringLiteral("--no-sandbox"),
                                QStringLiteral("--disable-gpu"), QStringLiteral("--disable-dev-shm-usage"),
                                QStringLiteral("--no-first-run"), QStringLiteral("--no-proxy-server"),
                                QStringLiteral("--disable-background-networking"),
                                QStringLiteral("--disable-component-update"),
                                QStringLiteral("--user-data-dir=") + m_profile.path(),
                                QStringLiteral("--remote-debugging-port=0"), url.toString()});
    return m_process.waitForStarted(PatienceMs) || fail(QStringLiteral("Chromium does not start"));
}

bool Chromium::attach(const QUrl& url)
{
    QUrl page;
    if (!QTest::qWaitFor([&] { return !(page = pageSocket(url)).isEmpty(); }, PatienceMs))
        return fail(QStringLiteral("Chromium does not show the page"));
    m_socket.open(page);
    const auto isConnected = [&] { return m_socket.state() == QAbstractSocket::ConnectedState; };
    return QTest::qWaitFor(isConnected, PatienceMs) ||
           fail(QStringLiteral("Chromium does not let anyone look"));
}

//! The address of the page's debugging protocol; empty until the browser has loaded the page.
QUrl Chromium::pageSocket(const QUrl& url)
{
    const QUrl list = pageList();
    if (list.isEmpty())
        return {};
    QNetworkAccessManager manager;
    const std::unique_ptr<QNetworkReply> reply(manager.get(QNetworkRequest(list)));
    QSignalSpy(reply.get(), &QNetworkReply::finished).wait(PatienceMs);
    const QJsonArray targets = QJsonDocument::fromJson(reply->readAll()).array();
    for (const QJsonValue& target : targets) {
        if (target[QStringLiteral("url")].toString() == url.toString())
            return target[QStringLiteral("webSocketDebuggerUrl")].toString();
    }
    return {};
}

//! Chromium chooses a port and prints it.
QUrl Chromium::pageList()
{
    m_log += m_process.readAllStandardError();
    static const QRegularExpression announcement(
        QStringLiteral("DevTools listening on ws://(127\\.0\\.0\\.1:\\d+)/"));
    const auto match = announcement.match(QString::fromLocal8Bit(m_log));
    return match.hasMatch() ? QUrl(QStringLiteral("http://%1/json/list").arg(match.captured(1))) : QUrl();
}

bool Chromium::fail(const QString& reason)
{
    m_error = reason + QLatin1Char('\n');
    return false;
}

QString Chromium::dom()
{
    return call(QStringLiteral("Runtime.evaluate"),
                {{QStringLiteral("expression"), QStringLiteral("document.documentElement.outerHTML")}})
        .value(QStringLiteral("result"))
        .toObject()
        .value(QStringLiteral("value"))
        .toString();
}

QImage Chromium::picture()
{
    const QString data =
        call(QStringLiteral("Page.captureScreenshot"), {}).value(QStringLiteral("data")).toString();
    return QImage::fromData(QByteArray::fromBase64(data.toLatin1()));
}

//! The result of a call to the page; empty without one.
QJsonObject Chromium::call(const QString& method, const QJsonObject& parameters)
{
    const int id = ++m_lastId;
    QSignalSpy answers(&m_socket, &QWebSocket::textMessageReceived);
    const QJsonObject order{{QStringLiteral("id"), id},
                            {QStringLiteral("method"), method},
                            {QStringLiteral("params"), parameters}};
    m_socket.sendTextMessage(QString::fromUtf8(QJsonDocument(order).toJson()));
    if (answers.isEmpty() && !answers.wait(PatienceMs))
        return {};
    const QJsonObject answer = QJsonDocument::fromJson(answers.first().first().toString().toUtf8()).object();
    return answer.value(QStringLiteral("id")).toInt() == id
               ? answer.value(QStringLiteral("result")).toObject()
               : QJsonObject();
}

} // namespace NelvoDevkit
