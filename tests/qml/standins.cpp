#include "tests/qml/standins.h"

void LoginCtrl::setAppList(const QJsonArray& appList)
{
    m_appList = appList;
    Q_EMIT appListChanged();
}

void LoginCtrl::reset()
{
    m_calls.clear();
    m_answer.clear();
    setAppList({});
}

QString LoginCtrl::login(const QString& userName, const QString& pwd, const QString& cimUrl,
                         const QString& pdsUrl)
{
    record(QStringLiteral("login"), {userName, pwd, cimUrl, pdsUrl});
    return m_answer;
}

void LoginCtrl::onResetCache(const QVariant& user, const QVariant& passwd, const QVariant& cimUrl,
                             const QVariant& pdsUrl, const QVariant& keep)
{
    record(QStringLiteral("onResetCache"), {user, passwd, cimUrl, pdsUrl, keep});
}

void LoginCtrl::onLogin(const QString& cimUrl, const QString& epID, const QString& epName)
{
    record(QStringLiteral("onLogin"), {cimUrl, epID, epName});
}

void LoginCtrl::onShowHome()
{
    record(QStringLiteral("onShowHome"), {});
}

void LoginCtrl::record(const QString& function, const QVariantList& arguments)
{
    m_calls.append(QVariant(QVariantList{function} + arguments));
    Q_EMIT called(function);
}
