#pragma once

#include <BVUtility/CTreeModel.h>

#include <QJsonArray>
#include <QObject>
#include <QStandardItemModel>
#include <QVariantList>

//! \brief Records what the pages call, on whatever object, in order.
class CallLog : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QVariantList calls READ calls)

public:
    //! The calls so far: each a list of the function's name and its arguments.
    QVariantList calls() const { return m_calls; }
    void record(const QString& function, const QVariantList& arguments = {});
    Q_INVOKABLE void clear() { m_calls.clear(); }

Q_SIGNALS:
    //! From within each call.
    void called(const QString& function);

private:
    QVariantList m_calls;
};

//! \brief Stands in for the manager behind the dialog: fetches stay open until deliver() answers them.
class PdsManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QJsonArray bimProjList READ bimProjList NOTIFY bimProjListChanged)
    Q_PROPERTY(bool bViewDWGBimList READ bViewDWGBimList NOTIFY bViewDWGBimListChanged)
    Q_PROPERTY(int listReads READ listReads)

public:
    explicit PdsManager(CallLog& log) : m_log(log) {}

    QJsonArray bimProjList() const;
    bool bViewDWGBimList() const { return m_viewDWG; }
    //! How often the list was read since the last reset().
    int listReads() const { return m_listReads; }

    //! The list of the fetch arrives.
    Q_INVOKABLE void deliver(const QJsonArray& list);
    //! As deliver() does, with `count` models named "模型 0", "模型 1" and so on.
    Q_INVOKABLE void deliverMany(int count);
    //! Shows these rows as a filter does: the list alone changes.
    Q_INVOKABLE void filter(const QJsonArray& list);
    Q_INVOKABLE void reset();

    Q_INVOKABLE void onOpenDialog();
    Q_INVOKABLE void onCloseDialog();
    Q_INVOKABLE void getBimProj();
    Q_INVOKABLE void getDWGBimProj();
    Q_INVOKABLE void downLoadBimProj(const QString& bimProj);
    Q_INVOKABLE void convertSimplyMode(const QString& bimProj, bool bCompletionFirst);
    Q_INVOKABLE void searchBydeptId(const QString& deptId);

Q_SIGNALS:
    void bimProjListChanged();
    void bViewDWGBimListChanged();

private:
    void beginFetch(bool dwg);

    CallLog& m_log;
    QJsonArray m_list;
    bool m_viewDWG = false;
    mutable int m_listReads = 0;
};

//! \brief The organisation's tree, filled from a test.
class OrgModel : public BVUTILITY::CTreeModel
{
    Q_OBJECT

public:
    explicit OrgModel(CallLog& log) : m_log(log) {}

    //! Puts a tree in place of the present one: a list of {id, name, canSelect, children}.
    Q_INVOKABLE void load(const QVariantList& nodes);
    //! Records the call, too.
    Q_INVOKABLE void expandAll();

private:
    void append(QStandardItem* parent, const QVariantList& nodes);

    CallLog& m_log;
};

//! \brief A tree without the signals that fold its rows.
class FlatModel : public QStandardItemModel
{
    Q_OBJECT

public:
    explicit FlatModel(CallLog& log) : m_log(log) {}

    Q_INVOKABLE void expandAll();

private:
    CallLog& m_log;
};

//! \brief Stands in for the objects that the host's context offers to the pages.
class HostContext : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isMainProject MEMBER m_isMainProject NOTIFY isMainProjectChanged)
    Q_PROPERTY(bool importAllowed MEMBER m_importAllowed)
    Q_PROPERTY(QString deviceID MEMBER m_deviceID NOTIFY deviceIDChanged)
    Q_PROPERTY(QString currentComp MEMBER m_currentComp NOTIFY currentCompChanged)
    Q_PROPERTY(QString eGlobalBackGround MEMBER m_backGround CONSTANT)
    Q_PROPERTY(QString eGlobalBorderColor MEMBER m_borderColor CONSTANT)

public:
    explicit HostContext(CallLog& log) : m_log(log) {}

    Q_INVOKABLE bool checkBimProjValid(const QVariant& guid, const QVariant& isMainProject);
    Q_INVOKABLE void openWeb(const QString& url, const QVariant& rect);
    Q_INVOKABLE void clearDeviceData(const QVariant& comp);

Q_SIGNALS:
    void isMainProjectChanged();
    void deviceIDChanged();
    void currentCompChanged();

private:
    CallLog& m_log;
    bool m_isMainProject = true;
    bool m_importAllowed = true;
    QString m_deviceID;
    QString m_currentComp;
    QString m_backGround = QStringLiteral("#2d2f41");
    QString m_borderColor = QStringLiteral("#3d4054");
};
