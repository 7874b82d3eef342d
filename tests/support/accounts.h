#pragma once

#include <QHash>
#include <QString>

namespace TestSupport {

//! The clear password of an account of the simulator's built-in seed.
inline QString passwordOf(const QString& user)
{
    static const QHash<QString, QString> passwords{
        {QStringLiteral("zhangwei"), QStringLiteral("123456")},   // one enterprise
        {QStringLiteral("lina"), QStringLiteral("lina2024")},     // twelve
        {QStringLiteral("wangfang"), QStringLiteral("wangfang")}, // none
        {QStringLiteral("müller"), QStringLiteral("Größe-9é")},   // one, a Latin-1 password
        {QStringLiteral("陈晓明"), QStringLiteral("xiaoming")},   // two
    };
    return passwords.value(user);
}

} // namespace TestSupport
