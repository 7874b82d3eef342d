#pragma once

#include <QMap>
#include <QString>

namespace NelvoDevkit {

//! An account's name for those who need not know it: its first character and three stars.
QString maskedAccount(const QString& user);

//! \brief Takes secrets out of texts that are to be shown or passed on.
//!
//! It is the second net: nothing that is shown is meant to hold one.
class Redaction
{
public:
    //! Very short secrets are not looked for: stars in their places would give them away.
    void hide(const QString& secret, const QString& replacement = QStringLiteral("***"));
    //! A password, and the forms in which it travels.
    void hidePassword(const QString& password);
    //! The values of cookies in their raw form, joined with commas.
    void hideCookies(const QString& cookies);

    QString redacted(QString text) const;

private:
    QMap<QString, QString> m_replacements;
};

} // namespace NelvoDevkit
