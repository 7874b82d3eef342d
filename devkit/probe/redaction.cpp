#include "probe/redaction.h"

#include <QCryptographicHash>
#include <QRegularExpression>
#include <QUrl>

namespace NelvoDevkit {

namespace {

constexpr int MinSecretLength = 4;

//! Secrets that are recognised by the text around them: the user part of a URL, and parameters, which
//! services use for session ids and tickets.
const QRegularExpression& givenAway()
{
    static const QRegularExpression pattern(
        QStringLiteral("://\\K[^/@\\s]+(?=@)|"
                       ";jsessionid=\\K[^?&\\s]+|"
                       "[?&](?:ticket|access_token|token|password|lt)=\\K[^&\\s]+"),
        QRegularExpression::CaseInsensitiveOption);
    return pattern;
}

} // namespace

QString maskedAccount(const QString& user)
{
    return user.size() > 1 ? user.left(1) + QStringLiteral("***") : QStringLiteral("***");
}

void Redaction::hide(const QString& secret, const QString& replacement)
{
    if (secret.size() >= MinSecretLength)
        m_replacements.insert(secret, replacement);
}

void Redaction::hidePassword(const QString& password)
{
    hide(password);
    hide(QString::fromLatin1(QUrl::toPercentEncoding(password)));
    hide(QString::fromLatin1(password.toUtf8().toBase64()));
    hide(QString::fromLatin1(QCryptographicHash::hash(password.toUtf8(), QCryptographicHash::Md5).toHex()));
}

void Redaction::hideCookies(const QString& cookies)
{
    // Attributes follow semicolons. Their values, such as a host's name, are no secrets.
    static const QRegularExpression value(QStringLiteral("(?:^|,)\\s*[^=;,\\s]+=([^;,]+)"));
    for (auto match = value.globalMatch(cookies); match.hasNext();)
        hide(match.next().captured(1));
}

QString Redaction::redacted(QString text) const
{
    for (auto secret = m_replacements.begin(); secret != m_replacements.end(); ++secret)
        text.replace(secret.key(), secret.value());
    return text.replace(givenAway(), QStringLiteral("***"));
}

} // namespace NelvoDevkit
