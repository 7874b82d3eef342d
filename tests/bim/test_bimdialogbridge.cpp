#include "bim/pdsmgr.h"

#include "tests/bim/pdsstandins.h"
#include "tests/support/messagelog.h"

#include <BVUtility/CTreeModel.h>

#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QtTest>

using NelvoPlugin::CPdsMgr;
using TestSupport::MessageLog;

namespace {

//! A host's scene: a window, and an item in it that stands at (30, 40) in a frame at (100, 50).
struct Scene {
    Scene()
    {
        frame.setParentItem(window.contentItem());
        frame.setPosition({100, 50});
        item.setParentItem(&frame);
        item.setPosition({30, 40});
        item.setSize({600, 400});
    }

    QList<QQuickItem*> dialogs() const
    {
        QList<QQuickItem*> found;
        for (QObject* child : item.children()) {
            if (auto* dialog = qobject_cast<QQuickItem*>(child))
                found.append(dialog);
        }
        return found;
    }

    QQmlEngine engine;
    QQuickWindow window;
    QQuickItem frame;
    QQuickItem item;
};

QStringList callsOf(const QQuickItem* dialog)
{
    return dialog->property("calls").toStringList();
}

QStringList words(const char* text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

} // namespace

class TestBimDialogBridge : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void contextShowsManagerAndModel();
    void contextForgetsADestroyedManager();
    void dialogIsAChildWithoutAVisualParent();
    void openingPlacesTheDialog();
    void openingGoesThroughTheParentsTransform();
    void openingTwicePlacesTheDialogAgain();
    void dwgDialogCallsItsOwnFunction();
    void observersHearOpeningAndClosing();
    void closingTakesTheDialogOutOfTheScene();
    void secondDialogTakesTheFirstOnesPlace();
    void dialogGoesWithTheHostsItem();
    void destroyedManagerLeavesTheDialog();
};

void TestBimDialogBridge::contextShowsManagerAndModel()
{
    Scene scene;
    CPdsMgr manager;
    manager.SetQmlContext(scene.engine.rootContext());
    const QQmlContext* context = scene.engine.rootContext();
    QCOMPARE(context->contextProperty(QStringLiteral("pdsMgr")).value<QObject*>(), &manager);
    const auto* model = qobject_cast<BVUTILITY::CTreeModel*>(
        context->contextProperty(QStringLiteral("orgModel")).value<QObject*>());
    QVERIFY(model);
    QVERIFY(!model->parent());
    QVERIFY(QMetaType::type("BVUTILITY::CTreeModel*") != QMetaType::UnknownType);

    Plugin plugin;
    plugin.projects.tree.name = L"root";
    manager.SetPlugin(&plugin);
    manager.InitBimData();
    QCOMPARE(model->rowCount(), 1);
}

void TestBimDialogBridge::contextForgetsADestroyedManager()
{
    Scene scene;
    {
        CPdsMgr manager;
        manager.SetQmlContext(scene.engine.rootContext());
    }
    for (const char* name : {"pdsMgr", "orgModel"})
        QVERIFY(!scene.engine.rootContext()->contextProperty(QLatin1String(name)).value<QObject*>());
}

void TestBimDialogBridge::dialogIsAChildWithoutAVisualParent()
{
    const MessageLog log;
    Scene scene;
    CPdsMgr manager;
    manager.SetQmlContext(scene.engine.rootContext());
    manager.CreateBimDialog(&scene.item);
    QCOMPARE(scene.dialogs().size(), 1);
    const QQuickItem* dialog = scene.dialogs().first();
    QVERIFY(!dialog->parentItem());
    QCOMPARE(dialog->property("seenManager").value<QObject*>(), &manager);
    QVERIFY(qobject_cast<BVUTILITY::CTreeModel*>(dialog->property("seenModel").value<QObject*>()));
    QVERIFY(callsOf(dialog).isEmpty());
    QVERIFY2(log.entries().isEmpty(), qPrintable(log.warnings().join(QLatin1Char('\n'))));
}

void TestBimDialogBridge::openingPlacesTheDialog()
{
    Scene scene;
    CPdsMgr manager;
    manager.SetQmlContext(scene.engine.rootContext());
    manager.CreateBimDialog(&scene.item);
    manager.OpenBimDialog();
    const QQuickItem* dialog = scene.dialogs().first();
    QCOMPARE(dialog->parentItem(), &scene.item);
    QCOMPARE(dialog->position(), QPointF(30, 40));
    QCOMPARE(callsOf(dialog), words("bim"));
}

void TestBimDialogBridge::openingGoesThroughTheParentsTransform()
{
    Scene scene;
    scene.item.setTransformOrigin(QQuickItem::TopLeft);
    scene.item.setScale(2);
    CPdsMgr manager;
    manager.SetQmlContext(scene.engine.rootContext());
    manager.CreateBimDialog(&scene.item);
    manager.OpenBimDialog();
    // Through the scale on the way to the scene, and through the same scale on the way back.
    QCOMPARE(scene.dialogs().first()->position(), QPointF(30, 40));
    QCOMPARE(scene.dialogs().first()->mapToScene({0, 0}), QPointF(130 + 60, 90 + 80));
}

//! The point goes into the dialog's own coordinates, so a dialog that has been placed is placed anew from
//! where it stands.
void TestBimDialogBridge::openingTwicePlacesTheDialogAgain()
{
    Scene scene;
    CPdsMgr manager;
    manager.SetQmlContext(scene.engine.rootContext());
    manager.CreateBimDialog(&scene.item);
    manager.OpenBimDialog();
    manager.OpenBimDialog();
    const QQuickItem* dialog = scene.dialogs().first();
    QCOMPARE(dialog->position(), QPointF(0, 0));
    QCOMPARE(callsOf(dialog), words("bim bim"));
    manager.OpenBimDialog();
    QCOMPARE(dialog->position(), QPointF(30, 40));
}

void TestBimDialogBridge::dwgDialogCallsItsOwnFunction()
{
    Scene scene;
    CPdsMgr manager;
    manager.SetQmlContext(scene.engine.rootContext());
    manager.CreateBimDialog(&scene.item);
    manager.OpenDWGBimDialog();
    const QQuickItem* dialog = scene.dialogs().first();
    QCOMPARE(dialog->parentItem(), &scene.item);
    QCOMPARE(dialog->position(), QPointF(30, 40));
    QCOMPARE(callsOf(dialog), words("dwg"));
}

void TestBimDialogBridge::observersHearOpeningAndClosing()
{
    Scene scene;
    PdsObserver observer;
    CPdsMgr manager;
    manager.Attach(&observer);
    manager.SetQmlContext(scene.engine.rootContext());
    manager.CreateBimDialog(&scene.item);
    QQuickItem* dialog = scene.dialogs().first();
    manager.onOpenDialog();
    manager.onCloseDialog();
    QCOMPARE(observer.calls, words("opened closed"));
    QCOMPARE(observer.dialogs, (QList<QQuickItem*>{dialog, dialog}));
    QCOMPARE(observer.visualParents, (QList<QQuickItem*>{&scene.item, nullptr}));
}

void TestBimDialogBridge::closingTakesTheDialogOutOfTheScene()
{
    Scene scene;
    CPdsMgr manager;
    manager.SetQmlContext(scene.engine.rootContext());
    manager.CreateBimDialog(&scene.item);
    manager.OpenBimDialog();
    QPointer<QQuickItem> dialog = scene.dialogs().first();
    manager.onCloseDialog();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(dialog);
    QVERIFY(!dialog->parentItem());
    QCOMPARE(dialog->parent(), &scene.item);
    // It is used again.
    manager.OpenDWGBimDialog();
    QCOMPARE(scene.dialogs().size(), 1);
    QCOMPARE(dialog->parentItem(), &scene.item);
    QCOMPARE(callsOf(dialog), words("bim dwg"));
}

void TestBimDialogBridge::secondDialogTakesTheFirstOnesPlace()
{
    Scene scene;
    CPdsMgr manager;
    manager.SetQmlContext(scene.engine.rootContext());
    manager.CreateBimDialog(&scene.item);
    manager.CreateBimDialog(&scene.item);
    QCOMPARE(scene.dialogs().size(), 2);
    manager.OpenBimDialog();
    QVERIFY(callsOf(scene.dialogs().first()).isEmpty());
    QVERIFY(!scene.dialogs().first()->parentItem());
    QCOMPARE(callsOf(scene.dialogs().last()), words("bim"));
}

void TestBimDialogBridge::dialogGoesWithTheHostsItem()
{
    Scene scene;
    PdsObserver observer;
    CPdsMgr manager;
    manager.Attach(&observer);
    manager.SetQmlContext(scene.engine.rootContext());
    {
        QQuickItem item(&scene.frame);
        manager.CreateBimDialog(&item);
    }
    // A host may tear its scene down before it shuts the plug-in down.
    manager.OpenBimDialog();
    manager.OpenDWGBimDialog();
    manager.onOpenDialog();
    manager.onCloseDialog();
    QVERIFY(observer.calls.isEmpty());
}

void TestBimDialogBridge::destroyedManagerLeavesTheDialog()
{
    Scene scene;
    {
        CPdsMgr manager;
        manager.SetQmlContext(scene.engine.rootContext());
        manager.CreateBimDialog(&scene.item);
    }
    QCOMPARE(scene.dialogs().size(), 1);
}

QTEST_MAIN(TestBimDialogBridge)
#include "test_bimdialogbridge.moc"
