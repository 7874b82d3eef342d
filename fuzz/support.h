#pragma once

#include <QByteArray>
#include <QNetworkReply>
#include <QPointer>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <vector>

//! \file
//! \brief Functions for all fuzz targets. A target is one function, which is called with one input.

extern "C" {
//! Creates the application, without a display and without a log.
int LLVMFuzzerInitialize(int* argc, char*** argv);
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
}

namespace Fuzz {

//! The input as the library receives it: copied, so that reading beyond its end is detected.
QByteArray bytesOf(const std::uint8_t* data, std::size_t size);

//! Ends the process if a guarantee of the library is violated.
void require(bool holds);

//! The path of a file beside the executable, where the library reads its files.
QString pathOf(const char* name);

//! Writes that file and returns its path.
QString writeFile(const char* name, const QByteArray& content);

//! The network's reply to a request.
struct Answer {
    QByteArray body;
    int status = 200;
    //! The lines of the Set-Cookie headers.
    QByteArray cookies = {};
    //! Size of the pieces in which the body arrives.
    int pieceSize = 1 << 20;
};

//! \brief Replaces the network while it exists: receives all requests of the process and sends none.
//!
//! The event loop of the requesting thread delivers a reply. The destructor deletes all replies.
class Network
{
public:
    Network();
    ~Network();
    Q_DISABLE_COPY(Network)

    //! Sets the answer to requests whose path ends with `path`. Requests without an answer get status 404.
    void answer(const char* path, const Answer& answer);
    //! Replies to a request of `manager`; any thread.
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
