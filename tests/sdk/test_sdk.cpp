#include <NelvoSDK/IHostContext.h>
#include <NelvoSDK/ILoginMgr.h>
#include <NelvoSDK/IMessageMgr.h>
#include <NelvoSDK/INelvoSDKPlugin.h>
#include <NelvoSDK/IPdsMgr.h>
#include <NelvoSDK/IProjectInfoMgr.h>
#include <NelvoSDK/Version.h>

#include <QtTest>

//! The default values of the public records, a host class that implements the observers, and the version.
class TestSdk : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void freshSessionIsEmpty();
    void freshProjectRecordsAreEmpty();
    void recordsAreValues();
    void observersNeedOnlyWhatIsCalled();
    void versionIsThatOfTheProject();
};

void TestSdk::freshSessionIsEmpty()
{
    const NelvoSDK::LoginSession session;
    QVERIFY(session.token.empty() && session.cookies.empty() && session.serverAddr.empty() &&
            session.sdkAddr.empty() && session.epName.empty() && session.appVer.empty() &&
            session.iotToken.empty());
    QVERIFY(!session.loggedIn);
    QVERIFY(session.extra.empty());
}

void TestSdk::freshProjectRecordsAreEmpty()
{
    const NelvoSDK::ProjectNode node;
    QVERIFY(!node.reservedFlag && !node.serverFlag);
    QVERIFY(node.name.empty() && node.id.empty() && node.x.empty() && node.y.empty());
    QVERIFY(node.code.empty() && node.basemap.empty() && node.proj4.empty() && node.attrs.empty());
    const NelvoSDK::ProjectRef project;
    QVERIFY(project.id.empty() && project.name.empty() && project.attrs.empty());
    const NelvoSDK::OrgTreeNode unit;
    QVERIFY(unit.id.empty() && unit.name.empty() && !unit.canSelect && unit.children.empty());
}

void TestSdk::recordsAreValues()
{
    NelvoSDK::LoginSession session;
    session.extra[L"epId"] = L"7";
    const NelvoSDK::LoginSession copy = session;
    session.extra.clear();
    QVERIFY(copy.extra.at(L"epId") == L"7");
}

void TestSdk::observersNeedOnlyWhatIsCalled()
{
    class Host final : public NelvoSDK::ILoginObserver,
                       public NelvoSDK::IMessageObserver,
                       public NelvoSDK::IPdsObserver,
                       public NelvoSDK::IHostContext
    {
    public:
        void OnLoginSucceeded(const NelvoSDK::LoginSession& session) override { loggedIn = session.loggedIn; }
        void OnLoginFailed() override {}
        void OnMessageFirst(const QString&) override {}
        void OnMessageSecond(const QString&) override {}
        void OnMessageThird(const QString&) override {}
        void OnBimDialogOpened(QQuickItem*) override {}
        void OnBimDialogClosed(QQuickItem*) override {}
        void OnBimProjListCleared() override {}
        void OnBimProjListSynced() override {}
        void OnDownLoadBimProj(const QStringList&) override {}
        void OnConvertSimplyMode(const QString&, bool) override {}
        QWebChannel* GetWebChannel() override { return nullptr; }

        bool loggedIn = false;
    };
    Host host;
    NelvoSDK::LoginSession session;
    session.loggedIn = true;
    static_cast<NelvoSDK::ILoginObserver&>(host).OnLoginSucceeded(session);
    QVERIFY(host.loggedIn);
    QVERIFY(!static_cast<NelvoSDK::IHostContext&>(host).GetWebChannel());
}

void TestSdk::versionIsThatOfTheProject()
{
    QCOMPARE(QStringLiteral(NELVO_SDK_VERSION_STRING), QStringLiteral(NELVO_PROJECT_VERSION));
    QCOMPARE(NELVO_SDK_VERSION >> 16, NELVO_PROJECT_VERSION_MAJOR);
    QCOMPARE((NELVO_SDK_VERSION >> 8) & 0xff, NELVO_PROJECT_VERSION_MINOR);
    QCOMPARE(NELVO_SDK_VERSION & 0xff, NELVO_PROJECT_VERSION_PATCH);
}

QTEST_APPLESS_MAIN(TestSdk)
#include "test_sdk.moc"
