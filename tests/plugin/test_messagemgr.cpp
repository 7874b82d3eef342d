#include "plugin/messagemgr.h"

#include "tests/support/crashdialog.h"
#include "tests/support/recorders.h"

#include <QProcess>
#include <QtTest>

#include <cstdio>

using TestSupport::MessageRecorder;

class TestMessageMgr : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void contextIsKeptForTheHost();
    void eachKindReachesItsOperation();
    void everyObserverIsReachedOnce();
    void detachedObserverHearsNothing();
    void detachingAStrayChangesNothing();
    void notifyingNobodyReturns();
    void textOutlivesTheSenders();
    void strangeTextsPassUnchanged();
    void nullObserverIsKeptAndCalled();
};

void TestMessageMgr::contextIsKeptForTheHost()
{
    NelvoPlugin::CMessageMgr manager;
    QCOMPARE(manager.GetContext(), nullptr);
    int context = 0;
    manager.SetContext(&context);
    QCOMPARE(manager.GetContext(), static_cast<void*>(&context));
}

void TestMessageMgr::eachKindReachesItsOperation()
{
    NelvoPlugin::CMessageMgr manager;
    MessageRecorder observer;
    manager.Attach(&observer);
    manager.NotifyFirst(QStringLiteral("a"));
    manager.NotifySecond(QStringLiteral("b"));
    manager.NotifyThird(QStringLiteral("c"));
    QCOMPARE(observer.heard,
             (QStringList{QStringLiteral("first:a"), QStringLiteral("second:b"), QStringLiteral("third:c")}));
}

void TestMessageMgr::everyObserverIsReachedOnce()
{
    NelvoPlugin::CMessageMgr manager;
    MessageRecorder first;
    MessageRecorder second;
    manager.Attach(&first);
    manager.Attach(&second);
    manager.Attach(&first);
    manager.NotifyFirst(QStringLiteral("x"));
    QCOMPARE(first.heard.size(), 1);
    QCOMPARE(second.heard.size(), 1);
}

void TestMessageMgr::detachedObserverHearsNothing()
{
    NelvoPlugin::CMessageMgr manager;
    MessageRecorder observer;
    manager.Attach(&observer);
    manager.Detach(&observer);
    manager.NotifyFirst(QStringLiteral("x"));
    QVERIFY(observer.heard.isEmpty());
}

void TestMessageMgr::detachingAStrayChangesNothing()
{
    NelvoPlugin::CMessageMgr manager;
    MessageRecorder attached;
    MessageRecorder stray;
    manager.Attach(&attached);
    manager.Detach(&stray);
    manager.NotifySecond(QStringLiteral("x"));
    QCOMPARE(attached.heard.size(), 1);
}

void TestMessageMgr::notifyingNobodyReturns()
{
    NelvoPlugin::CMessageMgr manager;
    const auto notifyEachKind = [&manager] {
        manager.NotifyFirst(QStringLiteral("unheard"));
        manager.NotifySecond(QStringLiteral("unheard"));
        manager.NotifyThird(QStringLiteral("unheard"));
    };
    notifyEachKind();
    MessageRecorder gone;
    manager.Attach(&gone);
    manager.Detach(&gone);
    notifyEachKind();
    QVERIFY(gone.heard.isEmpty());
    // The manager stores no message for later observers, and still works.
    MessageRecorder late;
    manager.Attach(&late);
    manager.NotifySecond(QStringLiteral("heard"));
    QCOMPARE(late.heard, QStringList{QStringLiteral("second:heard")});
}

void TestMessageMgr::textOutlivesTheSenders()
{
    class Changer final : public NelvoSDK::IMessageObserver
    {
    public:
        explicit Changer(QString& senders) : m_senders(senders) {}
        void OnMessageFirst(const QString& text) override
        {
            m_senders = QStringLiteral("changed");
            heard = text;
        }
        void OnMessageSecond(const QString&) override {}
        void OnMessageThird(const QString&) override {}

        QString heard;

    private:
        QString& m_senders;
    };
    QString senders = QStringLiteral("original");
    Changer one(senders);
    Changer other(senders);
    NelvoPlugin::CMessageMgr manager;
    manager.Attach(&one);
    manager.Attach(&other);
    manager.NotifyFirst(senders);
    QCOMPARE(one.heard, QStringLiteral("original"));
    QCOMPARE(other.heard, QStringLiteral("original"));
}

void TestMessageMgr::strangeTextsPassUnchanged()
{
    NelvoPlugin::CMessageMgr manager;
    MessageRecorder observer;
    manager.Attach(&observer);
    const QString text = QStringLiteral("您的帐号\n%1 \U0001F3D7");
    manager.NotifyThird(text);
    manager.NotifyThird(QString());
    QCOMPARE(observer.heard, (QStringList{QStringLiteral("third:") + text, QStringLiteral("third:")}));
}

namespace {

//! This variable is set in the child process, which notifies a null observer.
const char* const NullVariable = "NELVO_TEST_NOTIFY_NULL";

int notifyNull()
{
    TestSupport::disableCrashDialog();
    NelvoPlugin::CMessageMgr manager;
    manager.Attach(nullptr);
    std::puts("attached");
    std::fflush(stdout);
    manager.NotifyFirst(QStringLiteral("x"));
    return 0;
}

} // namespace

//! Callers must not pass null: Attach stores it, and the next notification crashes the process.
void TestMessageMgr::nullObserverIsKeptAndCalled()
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QLatin1String(NullVariable), QStringLiteral("1"));
    process.setProcessEnvironment(environment);
    process.start(QCoreApplication::applicationFilePath(), QStringList());
    QVERIFY(process.waitForFinished(60000));
    QCOMPARE(process.readAllStandardOutput().trimmed(), QByteArray("attached"));
    QVERIFY(process.exitStatus() == QProcess::CrashExit || process.exitCode() != 0);
}

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsSet(NullVariable))
        return notifyNull();
    QCoreApplication application(argc, argv);
    TestMessageMgr test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_messagemgr.moc"
