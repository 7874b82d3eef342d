#include "bim/pdsmgr.h"

#include "tests/bim/pdsstandins.h"
#include "tests/support/messagelog.h"

#include <QQmlEngine>
#include <QtTest>

using NelvoPlugin::CPdsMgr;

//! A program in which the dialog's page cannot be found.
class TestMissingDialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void operationsHaveNoEffect();
};

void TestMissingDialog::operationsHaveNoEffect()
{
    QQmlEngine engine;
    QQuickItem item;
    PdsObserver observer;
    CPdsMgr manager;
    manager.Attach(&observer);
    const TestSupport::MessageLog log;
    // Before there is any.
    manager.OpenBimDialog();
    manager.OpenDWGBimDialog();
    manager.onOpenDialog();
    manager.onCloseDialog();
    QVERIFY(log.entries().isEmpty());
    // After it failed to load, of which Qt says one line itself.
    manager.SetQmlContext(engine.rootContext());
    manager.CreateBimDialog(&item);
    QCOMPARE(log.warnings(), QStringList{QStringLiteral("QQmlComponent: Component is not ready")});
    manager.OpenBimDialog();
    manager.OpenDWGBimDialog();
    manager.onOpenDialog();
    manager.onCloseDialog();
    QCOMPARE(log.entries().size(), 1);
    QVERIFY(observer.calls.isEmpty());
    QVERIFY(item.childItems().isEmpty());
}

QTEST_MAIN(TestMissingDialog)
#include "test_missingdialog.moc"
