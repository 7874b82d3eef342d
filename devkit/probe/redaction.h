#pragma once

#include <QMap>
#include <QString>

namespace NelvoDevkit {

//! The masked name of an account: its first character and three stars.
QString maskedAccount(const QString& user);

//! \brief Removes secrets from texts that are shown or written to a report.
//!
//! This is a second safeguard: the texts should not contain secrets in the first place.
class Redaction
{
public:
    //! Ignores very short secrets: replacing them would reveal them.
    void hide(const QString& secret, const QString& replacement = QStringLiteral("***"));
    //! Hides a password, and its encoded forms in requests.
    void hidePassword(const QString& password);
    //! Hides the values of cookies in their raw form, joined with commas.
    void hideCookies(const QString& cookies);

    QString redacted(QString text) const;

private:
    QMap<QString, QString> m_replacements;
};

} // namespace NelvoDevkit
