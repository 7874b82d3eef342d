#include "bim/pdsmgr.h"

#include "tests/bim/pdsstandins.h"
#include "tests/support/messagelog.h"

#include <QQmlEngine>
#include <QtTest>

using NelvoPlugin::CPdsMgr;

//! A program that does not contain the dialog's page.
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
    // Before CreateBimDialog.
    manager.OpenBimDialog();
    manager.OpenDWGBimDialog();
    manager.onOpenDialog();
    manager.onCloseDialog();
    QVERIFY(log.entries().isEmpty());
    // After the dialog has failed to load, for which Qt logs one line.
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
