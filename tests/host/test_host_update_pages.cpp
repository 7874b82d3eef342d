#include "host/editor.h"

#include "tests/support/startedservices.h"

#include <NelvoSDK/LoadPlugin.h>

#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickWindow>
#include <QtTest>

#include <memory>

using NelvoDevkit::Editor;
using NelvoDevkit::LogModel;
using NelvoDevkit::UpdateDesk;

//! A version check while the login form of the built plug-in is visible.
class TestHostUpdatePages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void nothingNewerBringsTheFormBack();
    void skippedReleaseBringsTheFormBack();
    void updaterOfThePluginIsKnown();
    void unseenPageIsNoSignIn();

private:
    void checkWith(const QString& token) const;

    TestSupport::StartedServices m_services;
    NelvoSDK::INelvoSDKPlugin* m_plugin = nullptr;
    std::unique_ptr<LogModel> m_log;
    std::unique_ptr<Editor> m_editor;
};

namespace {

constexpr int Patience = 30000;

//! Returns the item with this object name in a visible window, or null.
QQuickItem* find(const QString& name)
{
    for (QWindow* window : QGuiApplication::topLevelWindows()) {
        auto* const view = qobject_cast<QQuickWindow*>(window);
        if (!view || !view->isVisible())
            continue;
        if (auto* const item = view->contentItem()->findChild<QQuickItem*>(name))
            return item;
    }
    return nullptr;
}

bool isShown(const QString& name)
{
    return find(name) != nullptr;
}

} // namespace

void TestHostUpdatePages::initTestCase()
{
    QString error;
    m_plugin = NelvoSDK::LoadPlugin(QStringLiteral(NELVO_APP_DIR), &error);
    QVERIFY2(m_plugin, qPrintable(error));
}

void TestHostUpdatePages::init()
{
    m_log = std::make_unique<LogModel>();
    m_editor = std::make_unique<Editor>(*m_plugin, *m_log, nullptr);
    m_editor->start();
    QTRY_VERIFY_WITH_TIMEOUT(isShown(QStringLiteral("loginComp")), Patience);
}

void TestHostUpdatePages::cleanup()
{
    m_editor.reset();
    m_log.reset();
}

void TestHostUpdatePages::checkWith(const QString& token) const
{
    m_editor->updates()->setService({m_services.updateUrl(), token, QStringLiteral("nelvo-editor")});
    m_editor->updates()->check();
}

void TestHostUpdatePages::nothingNewerBringsTheFormBack()
{
    QSignalSpy needed(m_editor->updates(), &UpdateDesk::loginFormNeeded);
    checkWith(QStringLiteral("not the token"));
    QTRY_COMPARE_WITH_TIMEOUT(needed.size(), 1, Patience);
    QVERIFY(isShown(QStringLiteral("loginComp")));
    QVERIFY(!isShown(QStringLiteral("validComp")));
    QCOMPARE(m_editor->updates()->state(), UpdateDesk::State::NothingNewer);
    QVERIFY(!m_editor->isSignedIn());
}

void TestHostUpdatePages::skippedReleaseBringsTheFormBack()
{
    checkWith(m_services.updates().token());
    QTRY_VERIFY_WITH_TIMEOUT(isShown(QStringLiteral("skipButton")), Patience);
    QCOMPARE(m_editor->updates()->state(), UpdateDesk::State::Offered);
    QMetaObject::invokeMethod(find(QStringLiteral("skipButton")), "clicked");
    QTRY_VERIFY_WITH_TIMEOUT(isShown(QStringLiteral("loginComp")), Patience);
    QVERIFY(!isShown(QStringLiteral("validComp")));
    QCOMPARE(m_editor->updates()->state(), UpdateDesk::State::Idle);
    QVERIFY(!m_editor->isSignedIn());
}

void TestHostUpdatePages::updaterOfThePluginIsKnown()
{
    checkWith(m_services.updates().token());
    QTRY_COMPARE_WITH_TIMEOUT(m_editor->updates()->state(), UpdateDesk::State::Offered, Patience);
    QCOMPARE(m_editor->updates()->version(), QStringLiteral("1.0.1"));
    QVERIFY(m_editor->updates()->changeLog().contains(QStringLiteral("<br/>")));
}

void TestHostUpdatePages::unseenPageIsNoSignIn()
{
    QQuickWindow* const window = find(QStringLiteral("loginComp"))->window();
    window->close();
    checkWith(QStringLiteral("not the token"));
    QTRY_COMPARE_WITH_TIMEOUT(m_editor->updates()->state(), UpdateDesk::State::NothingNewer, Patience);
    QVERIFY(window->contentItem()->childItems().isEmpty());
}

QTEST_MAIN(TestHostUpdatePages)
#include "test_host_update_pages.moc"
