#include "probe/explanation.h"

#include <QRegularExpression>

#include <vector>

namespace NelvoDevkit {

namespace {

struct Explanation {
    QRegularExpression text;
    //! %1 is the first capture.
    QString words;
};

const std::vector<Explanation>& explanations()
{
    const auto row = [](const char* text, const char* words) {
        return Explanation{QRegularExpression(QString::fromUtf8(text)), QString::fromUtf8(words)};
    };
    static const std::vector<Explanation> table{
        // Qt's texts for failed replies.
        row("^Host (.+) not found$",
            "no host of the name %1 is known here: check the address and the name server"),
        row("^Connection refused$",
            "the connection was refused: check host and port, and whether the service runs"),
        row("^(?:Host|Network) unreachable$",
            "no way leads to the host from here: check network and firewall"),
        row("timed out$", "the connection timed out: check host and port, and the firewall between"),
        // On Windows also the result of HTTPS at a port without TLS.
        row("^Connection closed$",
            "the server closed the connection before its reply was complete; or, by https://, the port does "
            "not speak TLS"),
        row("^Unable to write$", "the connection broke off before the whole request was sent"),
        row("^Permission denied$",
            "this machine lets no connection out to there: check its firewall and its security software"),
        row("^The address is not available$",
            "this machine has no free port for the connection, or the address is none to connect to"),
        row("^SSL handshake failed",
            "no encrypted connection came about: the server's certificate is not trusted here, or the port "
            "does not speak TLS"),
        row("^Error creating SSL context \\((.*)\\)$", "no encrypted connection came about: Windows could "
                                                       "not begin one (%1): check which versions of TLS "
                                                       "it is set to allow"),
        row("^(?:Failed to query the TLS context|Schannel failed to encrypt data): (.*)$",
            "the encrypted connection broke down in Windows: %1"),
        row("^(?:The message was tampered with, damaged or|A message was received) out of sequence\\.$",
            "what the server sent over the encrypted connection was damaged on its way"),
        row("^TLS initialization failed",
            "the OpenSSL libraries that Qt needs for https:// are missing here"),
        row("^Proxy .*", "the proxy of this machine's settings stands in the way"),
        row("^Host requires authentication$", "the server asks for HTTP authentication, which is not given"),
        row("^Too many redirects", "the server redirects in a circle"),
        row("^Insecure redirect", "the server redirects from https:// to http://, which is not followed"),
        row("^Error transferring .* - server replied: *(.*)$", "the server answered with an HTTP error: %1"),
        row("^Protocol \"(.*)\" is unknown$", "addresses that begin with \"%1\" cannot be asked"),
        // Qt's texts for certificates.
        row("^The (?:root certificate of the certificate chain|certificate) is self-signed, and untrusted|"
            "^The root CA certificate is not trusted for this purpose",
            "a self-signed certificate, or an authority that this machine does not trust"),
        row("^The issuer certificate (?:of a locally looked up certificate )?could not be found|"
            "^No certificates could be verified",
            "an authority that this machine does not know, or the server keeps the certificates between to "
            "itself"),
        // The plug-in's own texts.
        row("^parse json failed: *(.*)$", "the reply is no JSON: %1"),
        row("^(?:parseLoginArgs failed|query error)$", "the form page cannot be read: it is not well-formed"),
        row("^parsePostResult failed$",
            "the page that answers the form cannot be read: it is not well-formed"),
        row("^read compList failed$", "the enterprise list is no JSON"),
        row("^获取代理地址失败, 请检查服务器部署$",
            "the address list names no editor service (\"varlo-editor\")"),
        row("/org/heartbeat falied!$", "the editor service did not answer its heartbeat as it should"),
        row("/org/tree error!$", "the organisation tree did not come"),
        row("::GetServerProjectTree .* falied!$", "the list of scene projects did not come"),
        row("::getBimProjList .* falied!$", "the list of BIM models did not come"),
        row("::getDWGBimProjList .* falied!$", "the list of DWG drawings did not come"),
        row("^open file +(.*?) *failed:", "an editor needs this file, the probe does not: %1"),
    };
    return table;
}

} // namespace

QString explain(const QString& text)
{
    for (const Explanation& explanation : explanations()) {
        const QRegularExpressionMatch match = explanation.text.match(text);
        if (match.hasMatch())
            return explanation.text.captureCount() > 0 ? explanation.words.arg(match.captured(1))
                                                       : explanation.words;
    }
    return {};
}

QString httpErrorWords(int status, const QString& error, const QUrl& url)
{
    const QString reason = error.section(QStringLiteral("server replied:"), 1).trimmed();
    return QStringLiteral("the server answered with HTTP %1%2 at %3")
        .arg(QString::number(status), reason.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(reason),
             url.path());
}

} // namespace NelvoDevkit
