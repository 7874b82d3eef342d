#pragma once

#include <BVUtility/CTreeModel.h>

#include <QJsonArray>
#include <QObject>
#include <QStandardItemModel>
#include <QVariantList>

//! \brief Records the calls of the pages to all stand-ins, in order.
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
    //! Emitted during each call.
    void called(const QString& function);

private:
    QVariantList m_calls;
};

//! \brief A test double of the dialog's manager. deliver() ends a fetch.
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
    //! The number of reads of the list since the last reset().
    int listReads() const { return m_listReads; }

    //! Ends the fetch with this list.
    Q_INVOKABLE void deliver(const QJsonArray& list);
    //! Ends the fetch with `count` models named "模型 0", "模型 1" and so on.
    Q_INVOKABLE void deliverMany(int count);
    //! Changes only the list, like a filter.
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

//! \brief The organisation tree. The tests fill it.
class OrgModel : public BVUTILITY::CTreeModel
{
    Q_OBJECT

public:
    explicit OrgModel(CallLog& log) : m_log(log) {}

    //! Replaces the tree. `nodes` is a list of {id, name, canSelect, children}.
    Q_INVOKABLE void load(const QVariantList& nodes);
    //! Also records the call.
    Q_INVOKABLE void expandAll();

private:
    void append(QStandardItem* parent, const QVariantList& nodes);

    CallLog& m_log;
};

//! \brief A model without the signals `expand` and `collapse`.
class FlatModel : public QStandardItemModel
{
    Q_OBJECT

public:
    explicit FlatModel(CallLog& log) : m_log(log) {}

    Q_INVOKABLE void expandAll();

private:
    CallLog& m_log;
};

//! \brief A test double of the host's objects in the QML context of the pages.
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
