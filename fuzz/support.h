#pragma once

#include <QByteArray>
#include <QNetworkReply>
#include <QPointer>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <vector>

//! \file
//! \brief What the fuzz targets share. Each of them is one function, which takes one input.

extern "C" {
//! Makes the application, without a display and without a log.
int LLVMFuzzerInitialize(int* argc, char*** argv);
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
}

namespace Fuzz {

//! The input as the library gets it: bytes of their own, with their end under watch.
QByteArray bytesOf(const std::uint8_t* data, std::size_t size);

//! Ends the process if a promise of the library doesn't hold.
void require(bool holds);

//! The path of a file beside the executable, where the library looks for its own.
QString pathOf(const char* name);

//! Writes that file and returns its path.
QString writeFile(const char* name, const QByteArray& content);

//! What the network answers to a request.
struct Answer {
    QByteArray body;
    int status = 200;
    //! The lines of the answer's Set-Cookie headers.
    QByteArray cookies = {};
    //! Size of the pieces in which the body arrives.
    int pieceSize = 1 << 20;
};

//! \brief The network, as long as this object lives: all requests of the process come here, and none goes
//! out.
//!
//! A reply arrives by the event loop of the thread that asked for it. All of them go with this object.
class Network
{
public:
    Network();
    ~Network();
    Q_DISABLE_COPY(Network)

    //! Sets the answer to requests whose path ends with `path`. Requests without an answer get status 404.
    void answer(const char* path, const Answer& answer);
    //! Answers a request of `manager`; any thread.
    QNetworkReply* reply(QNetworkAccessManager& manager, const QNetworkRequest& request);

private:
    Answer answerTo(const QString& path) const;

    struct Known {
        QString path;
        Answer answer;
    };
    std::vector<Known> m_answers;
    std::vector<QPointer<QNetworkReply>> m_replies;
};

} // namespace Fuzz
