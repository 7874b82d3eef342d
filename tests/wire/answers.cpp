#include "tests/wire/answers.h"

#include <algorithm>

namespace Wire {

namespace {

using NelvoDevkit::RawAnswer;
using End = RawAnswer::End;

QByteArray statusLine(const SoundReply& sound)
{
    return "HTTP/1.1 " + sound.status + "\r\n";
}

QByteArray length(qint64 size)
{
    return "Content-Length: " + QByteArray::number(size) + "\r\n";
}

QByteArray ownLength(const SoundReply& sound)
{
    return length(sound.body.size());
}

QByteArray whole(const SoundReply& sound)
{
    return statusLine(sound) + ownLength(sound) + "\r\n" + sound.body;
}

//! The body with other headers.
RawAnswer withHeaders(const SoundReply& sound, const QByteArray& headers)
{
    return {statusLine(sound) + headers + "\r\n" + sound.body};
}

//! Another status with a body of the correct length.
RawAnswer withStatus(const SoundReply& sound, const QByteArray& status, const QByteArray& headers = {})
{
    return {"HTTP/1.1 " + status + "\r\n" + headers + ownLength(sound) + "\r\n" + sound.body};
}

RawAnswer redirect(const QByteArray& location)
{
    return {"HTTP/1.1 302 Found\r\nLocation: " + location + "\r\nContent-Length: 0\r\n\r\n"};
}

QByteArray chunk(const QByteArray& bytes)
{
    return QByteArray::number(bytes.size(), 16) + "\r\n" + bytes + "\r\n";
}

const QByteArray Chunked = QByteArrayLiteral("Transfer-Encoding: chunked\r\n");

RawAnswer chunked(const SoundReply& sound, const QByteArray& chunks, End end = End::Close)
{
    return {statusLine(sound) + Chunked + "\r\n" + chunks, {}, 0, {}, end};
}

//! With the content encoding of that name: the format of zlib, which Qt accepts for both encodings.
RawAnswer compressed(const SoundReply& sound, const QByteArray& encoding, const QByteArray& bytes)
{
    return {statusLine(sound) + "Content-Encoding: " + encoding + "\r\n" + length(bytes.size()) + "\r\n" +
            bytes};
}

QByteArray deflated(const QByteArray& bytes)
{
    constexpr int qtHead = 4;
    return qCompress(bytes).mid(qtHead);
}

QByteArray half(const QByteArray& bytes)
{
    return bytes.left(bytes.size() / 2);
}

constexpr auto RedirectElsewhere = "redirect to another origin";

} // namespace

const std::vector<Answer>& answers()
{
    // clang-format off
    static const std::vector<Answer> all{
        // Lengths
        {"whole", [](const SoundReply& s) { return RawAnswer{whole(s)}; }, Outcome::Used},
        {"no length", [](const SoundReply& s) { return withHeaders(s, {}); }, Outcome::Used},
        {"length too large", [](const SoundReply& s) { return withHeaders(s, length(s.body.size() + 100)); }, Outcome::UsedOrFailed},
        {"length too small", [](const SoundReply& s) { return withHeaders(s, length(s.body.size() / 2)); }, Outcome::Failed},
        {"length of zero", [](const SoundReply& s) { return withHeaders(s, length(0)); }, Outcome::Failed},
        {"length below zero", [](const SoundReply& s) { return withHeaders(s, length(-5)); }, Outcome::Used},
        {"length without a number", [](const SoundReply& s) { return withHeaders(s, "Content-Length: all\r\n"); }, Outcome::Used},
        {"length beyond 64 bits", [](const SoundReply& s) { return withHeaders(s, "Content-Length: 99999999999999999999\r\n"); }, Outcome::Used},
        {"length of exabytes", [](const SoundReply& s) { return withHeaders(s, "Content-Length: 9223372036854775807\r\n"); }, Outcome::UsedOrFailed},
        {"two lengths", [](const SoundReply& s) { return withHeaders(s, ownLength(s) + length(3)); }, Outcome::Used},
        {"length and chunks", [](const SoundReply& s) { return RawAnswer{statusLine(s) + length(3) + Chunked + "\r\n" + chunk(s.body) + chunk({})}; }, Outcome::Used},

        // Chunks
        {"one chunk", [](const SoundReply& s) { return chunked(s, chunk(s.body) + chunk({})); }, Outcome::Used},
        {"two chunks", [](const SoundReply& s) { return chunked(s, chunk(half(s.body)) + chunk(s.body.mid(s.body.size() / 2)) + chunk({})); }, Outcome::Used},
        {"no last chunk", [](const SoundReply& s) { return chunked(s, chunk(s.body)); }, Outcome::UsedOrFailed},
        {"chunk cut short", [](const SoundReply& s) { return chunked(s, half(chunk(s.body))); }, Outcome::Failed},
        {"closed in a chunk's size", [](const SoundReply& s) { return chunked(s, chunk(s.body) + "1"); }, Outcome::UsedOrFailed},
        {"closed behind a chunk's size", [](const SoundReply& s) { return chunked(s, chunk(s.body) + "1\r\n"); }, Outcome::UsedOrFailed},
        {"chunk extension and trailer", [](const SoundReply& s) { return chunked(s, QByteArray::number(s.body.size(), 16) + ";a=b\r\n" + s.body + "\r\n0\r\nX-End: 1\r\n\r\n"); }, Outcome::Used},
        {"chunk size of 64 bits", [](const SoundReply& s) { return chunked(s, "FFFFFFFFFFFFFFFF\r\n" + s.body); }, Outcome::Failed},
        {"chunk size beyond 64 bits", [](const SoundReply& s) { return chunked(s, "1FFFFFFFFFFFFFFFF\r\n" + s.body); }, Outcome::Failed},
        {"chunk size below zero", [](const SoundReply& s) { return chunked(s, "-5\r\n" + s.body); }, Outcome::MayNeverEnd},
        {"chunk size without a number", [](const SoundReply& s) { return chunked(s, "size\r\n" + s.body); }, Outcome::Failed},
        {"chunk size without end", [](const SoundReply& s) { return RawAnswer{statusLine(s) + Chunked + "\r\n", "0", 100000}; }, Outcome::MayNeverEnd},

        // Status lines and headers
        {"one 100 Continue", [](const SoundReply& s) { return RawAnswer{"HTTP/1.1 100 Continue\r\n\r\n" + whole(s)}; }, Outcome::Used},
        {"1,000 times 100 Continue", [](const SoundReply&) { return RawAnswer{{}, "HTTP/1.1 100 Continue\r\n\r\n", 1000}; }, Outcome::Failed},
        {"103 Early Hints", [](const SoundReply& s) { return RawAnswer{"HTTP/1.1 103 Early Hints\r\nLink: </a>\r\n\r\n" + whole(s)}; }, Outcome::Failed},
        {"101 Switching Protocols", [](const SoundReply&) { return RawAnswer{"HTTP/1.1 101 Switching Protocols\r\nUpgrade: x\r\n\r\n"}; }, Outcome::Failed},
        {"status line without end", [](const SoundReply&) { return RawAnswer{"HTTP/1.1 200 ", "O", 100000}; }, Outcome::Failed},
        {"header without end", [](const SoundReply& s) { return RawAnswer{statusLine(s) + "X: ", "x", 100000}; }, Outcome::Failed},
        {"10,000 headers", [](const SoundReply& s) { return RawAnswer{statusLine(s), "X-Filler: 1\r\n", 10000, ownLength(s) + "\r\n" + s.body}; }, Outcome::Used},
        {"NUL in a header", [](const SoundReply& s) { return withHeaders(s, ownLength(s) + QByteArray("X: a\0b\r\n", 8)); }, Outcome::Used},
        {"header without a colon", [](const SoundReply& s) { return withHeaders(s, ownLength(s) + "nothing\r\n"); }, Outcome::Used},
        {"lines that end in LF", [](const SoundReply& s) { return RawAnswer{whole(s).replace("\r\n", "\n")}; }, Outcome::Used},
        {"no reason phrase", [](const SoundReply& s) { return withStatus(s, s.status.left(3)); }, Outcome::Used},
        {"status 999", [](const SoundReply& s) { return withStatus(s, "999 Odd"); }, Outcome::Failed},
        {"status without a number", [](const SoundReply& s) { return withStatus(s, "OK"); }, Outcome::Failed},
        {"another protocol", [](const SoundReply& s) { return RawAnswer{"ICY " + s.status + "\r\n\r\n" + s.body}; }, Outcome::Failed},
        {"the body alone", [](const SoundReply& s) { return RawAnswer{s.body}; }, Outcome::Failed},
        {"NULs alone", [](const SoundReply&) { return RawAnswer{{}, QByteArray(1, '\0'), 100000}; }, Outcome::Failed},

        // Ends of the connection
        {"closed at once", [](const SoundReply&) { return RawAnswer{}; }, Outcome::Failed},
        {"closed in the status line", [](const SoundReply&) { return RawAnswer{"HTTP/1."}; }, Outcome::Failed},
        {"closed in the headers", [](const SoundReply& s) { return RawAnswer{statusLine(s) + "Content-Le"}; }, Outcome::Failed},
        {"closed behind the headers", [](const SoundReply& s) { return RawAnswer{statusLine(s) + ownLength(s) + "\r\n"}; }, Outcome::Failed},
        {"closed in the body", [](const SoundReply& s) { return RawAnswer{half(whole(s))}; }, Outcome::Failed},
        {"reset at once", [](const SoundReply&) { return RawAnswer{{}, {}, 0, {}, End::Reset}; }, Outcome::Failed},
        {"reset in the status line", [](const SoundReply&) { return RawAnswer{"HTTP/1.", {}, 0, {}, End::Reset}; }, Outcome::Failed},
        {"reset in the headers", [](const SoundReply& s) { return RawAnswer{statusLine(s) + "Content-Le", {}, 0, {}, End::Reset}; }, Outcome::Failed},
        {"reset in the body", [](const SoundReply& s) { return RawAnswer{half(whole(s)), {}, 0, {}, End::Reset}; }, Outcome::Failed},
        {"held at once", [](const SoundReply&) { return RawAnswer{{}, {}, 0, {}, End::Hold}; }, Outcome::WaitsForClose},
        {"held in the headers", [](const SoundReply& s) { return RawAnswer{statusLine(s) + "Content-Le", {}, 0, {}, End::Hold}; }, Outcome::WaitsForClose},
        {"held in the body", [](const SoundReply& s) { return RawAnswer{half(whole(s)), {}, 0, {}, End::Hold}; }, Outcome::WaitsForClose},
        {"held in a chunk", [](const SoundReply& s) { return chunked(s, half(chunk(s.body)), End::Hold); }, Outcome::WaitsForClose},

        // Other statuses
        {"204 with a body", [](const SoundReply& s) { return withStatus(s, "204 No Content"); }, Outcome::Failed},
        {"304 with a body", [](const SoundReply& s) { return withStatus(s, "304 Not Modified"); }, Outcome::Failed},
        {"401 with a challenge", [](const SoundReply& s) { return withStatus(s, "401 Unauthorized", "WWW-Authenticate: Basic realm=\"a\"\r\n"); }, Outcome::Failed},
        {"401 with an odd challenge", [](const SoundReply& s) { return withStatus(s, "401 Unauthorized", "WWW-Authenticate: Digest nonce=\"\r\n"); }, Outcome::Failed},
        {"407 with a challenge", [](const SoundReply& s) { return withStatus(s, "407 Proxy", "Proxy-Authenticate: Basic realm=\"a\"\r\n"); }, Outcome::Failed},

        // Redirects
        {"redirect to a file", [](const SoundReply&) { return redirect("file:///etc/hostname"); }, Outcome::Failed},
        {"redirect to data", [](const SoundReply& s) { return redirect("data:text/plain;base64," + s.body.toBase64()); }, Outcome::Failed},
        {"redirect to a resource", [](const SoundReply&) { return redirect("qrc:/qml/Main.qml"); }, Outcome::Failed},
        {"redirect to FTP", [](const SoundReply&) { return redirect("ftp://127.0.0.1/a"); }, Outcome::Failed},
        {RedirectElsewhere, [](const SoundReply& s) { return redirect(s.elsewhere); }, Outcome::Used},
        {"redirect to nothing", [](const SoundReply&) { return redirect({}); }, Outcome::Failed},
        {"redirect to no address", [](const SoundReply&) { return redirect("http://["); }, Outcome::Failed},
        {"redirect to a closed port", [](const SoundReply&) { return redirect("http://127.0.0.1:1/"); }, Outcome::Failed},

        // Bodies
        {"invalid UTF-8", [](const SoundReply&) { return RawAnswer{whole({"200 OK", "{\"data\":\"\xff\xfe\"}"})}; }, Outcome::Failed},
        {"NULs for a body", [](const SoundReply& s) { return RawAnswer{whole({s.status, QByteArray(1000, '\0')})}; }, Outcome::Failed},
        {"compressed", [](const SoundReply& s) { return compressed(s, "gzip", deflated(s.body)); }, Outcome::Failed},
        {"compressed by deflate", [](const SoundReply& s) { return compressed(s, "deflate", deflated(s.body)); }, Outcome::Failed},
        {"not compressed, but said to be", [](const SoundReply& s) { return compressed(s, "gzip", s.body); }, Outcome::Used},
        {"compressed and cut", [](const SoundReply& s) { return compressed(s, "gzip", half(deflated(s.body))); }, Outcome::Failed},
        {"unknown encoding", [](const SoundReply& s) { return compressed(s, "br", s.body); }, Outcome::Used},
    };
    // clang-format on
    return all;
}

const Answer& redirectElsewhere()
{
    return *std::find_if(answers().begin(), answers().end(),
                         [](const Answer& answer) { return answer.name == RedirectElsewhere; });
}

char* toString(Outcome outcome)
{
    switch (outcome) {
    case Outcome::Used:
        return qstrdup("used");
    case Outcome::Failed:
        return qstrdup("failed");
    case Outcome::UsedOrFailed:
        return qstrdup("used or failed");
    case Outcome::WaitsForClose:
        return qstrdup("waits for the close");
    case Outcome::MayNeverEnd:
        return qstrdup("may never end");
    }
    return qstrdup("unknown");
}

} // namespace Wire
