#pragma once

#include <QJsonArray>
#include <QObject>
#include <QString>
#include <QVariantList>

//! \brief A test double of the login actor. Records the calls of the pages. `answer` is the result of login().
class LoginCtrl : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QJsonArray appList READ appList WRITE setAppList NOTIFY appListChanged)
    Q_PROPERTY(QString answer MEMBER m_answer)
    Q_PROPERTY(QVariantList calls READ calls)

public:
    QJsonArray appList() const { return m_appList; }
    void setAppList(const QJsonArray& appList);
    void setAnswer(const QString& answer) { m_answer = answer; }

    //! The calls so far: each a list of the function's name and its arguments.
    QVariantList calls() const { return m_calls; }

    //! Clears the calls and the list. Later calls of login() succeed.
    Q_INVOKABLE void reset();

public Q_SLOTS:
    QString login(const QString& userName, const QString& pwd, const QString& cimUrl, const QString& pdsUrl);
    void onResetCache(const QVariant& user, const QVariant& passwd, const QVariant& cimUrl,
                      const QVariant& pdsUrl, const QVariant& keep);
    void onLogin(const QString& cimUrl, const QString& epID, const QString& epName);
    void onShowHome();

Q_SIGNALS:
    void appListChanged();
    //! Emitted during each call. The real login and onLogin process events at this point, while they wait
    //! for the service.
    void called(const QString& function);

private:
    void record(const QString& function, const QVariantList& arguments);

    QJsonArray m_appList;
    QString m_answer;
    QVariantList m_calls;
};

//! \brief A test double of the login window, which the pages move.
class WindowStandIn : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int x MEMBER m_x)
    Q_PROPERTY(int y MEMBER m_y)

private:
    int m_x = 0;
    int m_y = 0;
};
