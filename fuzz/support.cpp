#include "fuzz/support.h"

#include <QCoreApplication>
#include <QFile>
#include <QGuiApplication>
#include <QMutex>
#include <QMutexLocker>
#include <QNetworkAccessManager>
#include <QNetworkCookie>
#include <QNetworkCookieJar>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <typeinfo>
#include <utility>

namespace {

QMutex networkMutex;
Fuzz::Network* network = nullptr;

//! \brief A reply whose body arrives in pieces.
class Reply final : public QNetworkReply
{
public:
    Reply(QNetworkAccessManager& manager, const QNetworkRequest& request, Fuzz::Answer answer)
        : m_manager(manager), m_answer(std::move(answer))
    {
        setRequest(request);
        setUrl(request.url());
        setAttribute(QNetworkRequest::HttpStatusCodeAttribute, m_answer.status);
        open(ReadOnly);
        goOn();
    }

    void abort() override { end(OperationCanceledError); }
    bool isSequential() const override { return true; }
    qint64 bytesAvailable() const override { return m_arrived - m_read + QNetworkReply::bytesAvailable(); }

protected:
    qint64 readData(char* data, qint64 maxSize) override
    {
        const auto size = static_cast<int>(std::min<qint64>(maxSize, m_arrived - m_read));
        std::memcpy(data, m_answer.body.constData() + m_read, static_cast<std::size_t>(size));
        m_read += size;
        return size > 0 || !isFinished() ? size : -1;
    }

private:
    void goOn() { QMetaObject::invokeMethod(this, &Reply::bringPiece, Qt::QueuedConnection); }

    void bringPiece()
    {
        if (isFinished())
            return;
        if (m_arrived == 0 && !m_answer.cookies.isEmpty())
            m_manager.cookieJar()->setCookiesFromUrl(QNetworkCookie::parseCookies(m_answer.cookies), url());
        if (m_arrived == m_answer.body.size()) {
            end(m_answer.status < 400 ? NoError : UnknownContentError);
            return;
        }
        m_arrived = std::min(m_arrived + m_answer.pieceSize, m_answer.body.size());
        const QPointer<Reply> self(this);
        Q_EMIT readyRead();
        if (self)
            Q_EMIT downloadProgress(m_arrived, m_answer.body.size());
        if (self)
            goOn();
    }

    void end(NetworkError error)
    {
        const QPointer<Reply> self(this);
        if (error != NoError && this->error() == NoError) {
            setError(error, QStringLiteral("status %1").arg(m_answer.status));
            Q_EMIT errorOccurred(error);
        }
        if (!self || isFinished())
            return;
        setFinished(true);
        Q_EMIT finished();
    }

    QNetworkAccessManager& m_manager;
    const Fuzz::Answer m_answer;
    int m_arrived = 0;
    int m_read = 0;
};

QNetworkReply* replyOf(QNetworkAccessManager& manager, const QNetworkRequest& request)
{
    const QMutexLocker locker(&networkMutex);
    Fuzz::require(network != nullptr);
    return network->reply(manager, request);
}

} // namespace

// The linker prefers these definitions to Qt's own, for the library and inside Qt. Qt's XML patterns reads a
// page through a subclass of the manager that creates its own replies.

QNetworkReply* QNetworkAccessManager::get(const QNetworkRequest& request)
{
    return typeid(*this) == typeid(QNetworkAccessManager) ? replyOf(*this, request)
                                                          : createRequest(GetOperation, request);
}

QNetworkReply* QNetworkAccessManager::post(const QNetworkRequest& request, const QByteArray& /*body*/)
{
    return replyOf(*this, request);
}

QNetworkReply* QNetworkAccessManager::put(const QNetworkRequest& request, const QByteArray& /*body*/)
{
    return replyOf(*this, request);
}

int LLVMFuzzerInitialize(int* /*argc*/, char*** argv)
{
    static int count = 1;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    // Exists until the process ends, like the windows of the targets.
    static const auto* const application = new QGuiApplication(count, *argv);
    Q_UNUSED(application)
    return 0;
}

namespace Fuzz {

QByteArray bytesOf(const std::uint8_t* data, std::size_t size)
{
    return {reinterpret_cast<const char*>(data), static_cast<int>(size)};
}

void require(bool holds)
{
    if (!holds)
        std::abort();
}

QString pathOf(const char* name)
{
    return QCoreApplication::applicationDirPath() + QLatin1Char('/') + QLatin1String(name);
}

QString writeFile(const char* name, const QByteArray& content)
{
    QFile file(pathOf(name));
    require(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    return file.fileName();
}

Network::Network()
{
    const QMutexLocker locker(&networkMutex);
    require(network == nullptr);
    network = this;
}

Network::~Network()
{
    {
        const QMutexLocker locker(&networkMutex);
        network = nullptr;
    }
    for (const QPointer<QNetworkReply>& reply : m_replies)
        delete reply;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void Network::answer(const char* path, const Answer& answer)
{
    m_answers.push_back({QLatin1String(path), answer});
}

QNetworkReply* Network::reply(QNetworkAccessManager& manager, const QNetworkRequest& request)
{
    auto* const reply = new Reply(manager, request, answerTo(request.url().path()));
    m_replies.emplace_back(reply);
    return reply;
}

Answer Network::answerTo(const QString& path) const
{
    const auto known = std::find_if(m_answers.begin(), m_answers.end(),
                                    [&path](const Known& known) { return path.endsWith(known.path); });
    return known == m_answers.end() ? Answer{{}, 404} : known->answer;
}

} // namespace Fuzz
