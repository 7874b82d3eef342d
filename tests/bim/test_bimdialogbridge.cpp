#include "bim/pdsmgr.h"

#include "tests/bim/pdsstandins.h"
#include "tests/support/messagelog.h"
#include "tests/support/pluginshell.h"

#include <BVUtility/CTreeModel.h>

#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QtTest>

using NelvoPlugin::CPdsMgr;
using TestSupport::MessageLog;
using TestSupport::PluginShell;

namespace {

//! A host's scene: a window with a frame at (100, 50), and in the frame an item at (30, 40).
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

//! A scene in which a manager has created the dialog. The dialog is not open.
struct BuiltDialog : Scene {
    BuiltDialog()
    {
        manager.SetQmlContext(engine.rootContext());
        manager.CreateBimDialog(&item);
    }

    QQuickItem* dialog() const { return dialogs().first(); }

    CPdsMgr manager;
};

QStringList callsOf(const QQuickItem* dialog)
{
    return dialog->property("calls").toStringList();
}

BVUTILITY::CTreeModel* modelIn(const QQmlContext& context)
{
    return qobject_cast<BVUTILITY::CTreeModel*>(
        context.contextProperty(QStringLiteral("orgModel")).value<QObject*>());
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
    void treeThatIsNotKnownIsAnEmptyUnit();
    void contextForgetsADestroyedManager();
    void dialogIsAChildWithoutAVisualParent();
    void dialogSeesTheContextThatTheManagerHas();
    void dialogsReceiveTheColumnsOfTheList();
    void laterContextTakesTheFirstOnesPlace();
    void openingPlacesTheDialog();
    void openingGoesThroughTheParentsTransform();
    void openingTwicePlacesTheDialogAgain();
    void dwgDialogCallsItsOwnFunction();
    void observersHearOpeningAndClosing();
    void closingTakesTheDialogOutOfTheScene();
    void secondDialogTakesTheFirstOnesPlace();
    void secondDialogShowsOverItsOwnParent();
    void dialogGoesWithTheHostsItem();
    void destroyedManagerLeavesTheDialog();
    void withoutItsContextThereIsNoDialog();
    void withoutItsEngineThereIsNoDialog();
    void withoutItsItemNothingOpens();
    void withoutItsParentNothingOpens();
};

void TestBimDialogBridge::contextShowsManagerAndModel()
{
    Scene scene;
    CPdsMgr manager;
    manager.SetQmlContext(scene.engine.rootContext());
    const QQmlContext* context = scene.engine.rootContext();
    QCOMPARE(context->contextProperty(QStringLiteral("pdsMgr")).value<QObject*>(), &manager);
    const auto* model = modelIn(*context);
    QVERIFY(model);
    QVERIFY(!model->parent());
    QVERIFY(QMetaType::type("BVUTILITY::CTreeModel*") != QMetaType::UnknownType);

    ProjectInfo projects;
    projects.tree.name = L"root";
    PluginShell plugin;
    plugin.projectInfoMgr = &projects;
    manager.SetPlugin(&plugin);
    manager.InitBimData();
    QCOMPARE(model->rowCount(), 1);
}

void TestBimDialogBridge::treeThatIsNotKnownIsAnEmptyUnit()
{
    Scene scene;
    ProjectInfo projects;
    PluginShell plugin;
    plugin.projectInfoMgr = &projects;
    CPdsMgr manager;
    manager.SetQmlContext(scene.engine.rootContext());
    manager.SetPlugin(&plugin);
    manager.InitBimData();
    const auto* model = modelIn(*scene.engine.rootContext());
    QVERIFY(model);
    QCOMPARE(model->rowCount(), 1);
    QCOMPARE(model->item(0)->data(Qt::UserRole + 1).toMap(),
             (QVariantMap{{QStringLiteral("id"), QString()},
                          {QStringLiteral("name"), QString()},
                          {QStringLiteral("canSelect"), false}}));
}

void TestBimDialogBridge::contextForgetsADestroyedManager()
{
    Scene scene;
    QPointer<BVUTILITY::CTreeModel> model;
    {
        CPdsMgr manager;
        manager.SetQmlContext(scene.engine.rootContext());
        model = modelIn(*scene.engine.rootContext());
        QVERIFY(model);
    }
    QVERIFY(!model);
    for (const char* name : {"pdsMgr", "orgModel"})
        QVERIFY(!scene.engine.rootContext()->contextProperty(QLatin1String(name)).value<QObject*>());
    QVERIFY(scene.item.children().isEmpty());
}

void TestBimDialogBridge::dialogIsAChildWithoutAVisualParent()
{
    const MessageLog log;
    BuiltDialog built;
    QCOMPARE(built.dialogs().size(), 1);
    const QQuickItem* dialog = built.dialog();
    QVERIFY(!dialog->parentItem());
    QCOMPARE(dialog->property("seenManager").value<QObject*>(), &built.manager);
    QVERIFY(qobject_cast<BVUTILITY::CTreeModel*>(dialog->property("seenModel").value<QObject*>()));
    QVERIFY(callsOf(dialog).isEmpty());
    QVERIFY2(log.entries().isEmpty(), qPrintable(log.warnings().join(QLatin1Char('\n'))));
}

void TestBimDialogBridge::dialogSeesTheContextThatTheManagerHas()
{
    Scene scene;
    QQmlContext context(scene.engine.rootContext());
    CPdsMgr manager;
    manager.SetQmlContext(&context);
    manager.CreateBimDialog(&scene.item);
    QCOMPARE(scene.dialogs().size(), 1);
    QCOMPARE(scene.dialogs().first()->property("seenManager").value<QObject*>(), &manager);
    QVERIFY(!scene.engine.rootContext()->contextProperty(QStringLiteral("pdsMgr")).isValid());
}

void TestBimDialogBridge::dialogsReceiveTheColumnsOfTheList()
{
    Scene scene;
    QPointer<QObject> columns;
    {
        CPdsMgr manager;
        manager.SetQmlContext(scene.engine.rootContext());
        manager.CreateBimDialog(&scene.item);
        manager.CreateBimDialog(&scene.item);
        QCOMPARE(scene.dialogs().size(), 2);
        for (const QQuickItem* dialog : scene.dialogs()) {
            columns = dialog->property("modelColumns").value<QObject*>();
            QVERIFY(columns);
            QCOMPARE(columns->property("columns"), QVariant(QVariantMap()));
            const QSignalSpy changes(columns, SIGNAL(columnsChanged()));
            Q_EMIT manager.bimProjListChanged();
            QCOMPARE(changes.size(), 1);
        }
    }
    QVERIFY(!columns);
}

void TestBimDialogBridge::laterContextTakesTheFirstOnesPlace()
{
    Scene scene;
    QQmlContext first(scene.engine.rootContext());
    QQmlContext second(scene.engine.rootContext());
    CPdsMgr manager;
    manager.SetQmlContext(&first);
    manager.SetQmlContext(&second);
    for (const QQmlContext* context : {&first, &second}) {
        QCOMPARE(context->contextProperty(QStringLiteral("pdsMgr")).value<QObject*>(), &manager);
        QVERIFY(modelIn(*context));
    }
    manager.CreateBimDialog(&scene.item);
    QCOMPARE(scene.dialogs().size(), 1);
    QCOMPARE(QQmlEngine::contextForObject(scene.dialogs().first())->parentContext(), &second);
}

void TestBimDialogBridge::openingPlacesTheDialog()
{
    BuiltDialog built;
    built.manager.OpenBimDialog();
    const QQuickItem* dialog = built.dialog();
    QCOMPARE(dialog->property("placeWhenAsked").toPointF(), QPointF(30, 40));
    QCOMPARE(dialog->parentItem(), &built.item);
    QCOMPARE(dialog->position(), QPointF(30, 40));
    QCOMPARE(callsOf(dialog), words("bim"));
}

void TestBimDialogBridge::openingGoesThroughTheParentsTransform()
{
    BuiltDialog built;
    built.item.setTransformOrigin(QQuickItem::TopLeft);
    built.item.setScale(2);
    built.manager.OpenBimDialog();
    // The mapping to the scene applies the scale, and the mapping to the dialog removes it again.
    QCOMPARE(built.dialog()->position(), QPointF(30, 40));
    QCOMPARE(built.dialog()->mapToScene({0, 0}), QPointF(130 + 60, 90 + 80));
}

//! The position is mapped to the dialog's own coordinates, so a second opening moves a placed dialog.
void TestBimDialogBridge::openingTwicePlacesTheDialogAgain()
{
    BuiltDialog built;
    built.manager.OpenBimDialog();
    built.manager.OpenBimDialog();
    const QQuickItem* dialog = built.dialog();
    QCOMPARE(dialog->position(), QPointF(0, 0));
    QCOMPARE(callsOf(dialog), words("bim bim"));
    built.manager.OpenBimDialog();
    QCOMPARE(dialog->position(), QPointF(30, 40));
}

void TestBimDialogBridge::dwgDialogCallsItsOwnFunction()
{
    BuiltDialog built;
    built.manager.OpenDWGBimDialog();
    const QQuickItem* dialog = built.dialog();
    QCOMPARE(dialog->parentItem(), &built.item);
    QCOMPARE(dialog->position(), QPointF(30, 40));
    QCOMPARE(callsOf(dialog), words("dwg"));
}

void TestBimDialogBridge::observersHearOpeningAndClosing()
{
    PdsObserver observer;
    BuiltDialog built;
    built.manager.Attach(&observer);
    QQuickItem* dialog = built.dialog();
    built.manager.onOpenDialog();
    built.manager.onCloseDialog();
    QCOMPARE(observer.calls, words("opened closed"));
    QCOMPARE(observer.dialogs, (QList<QQuickItem*>{dialog, dialog}));
    QCOMPARE(observer.visualParents, (QList<QQuickItem*>{&built.item, nullptr}));
}

void TestBimDialogBridge::closingTakesTheDialogOutOfTheScene()
{
    BuiltDialog built;
    built.manager.OpenBimDialog();
    QPointer<QQuickItem> dialog = built.dialog();
    built.manager.onCloseDialog();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(dialog);
    QVERIFY(!dialog->parentItem());
    QCOMPARE(dialog->parent(), &built.item);
    // The next call opens the same dialog.
    built.manager.OpenDWGBimDialog();
    QCOMPARE(built.dialogs().size(), 1);
    QCOMPARE(dialog->parentItem(), &built.item);
    QCOMPARE(callsOf(dialog), words("bim dwg"));
}

void TestBimDialogBridge::secondDialogTakesTheFirstOnesPlace()
{
    BuiltDialog built;
    built.manager.CreateBimDialog(&built.item);
    QCOMPARE(built.dialogs().size(), 2);
    QCOMPARE(built.item.findChildren<QQmlComponent*>(QString(), Qt::FindDirectChildrenOnly).size(), 2);
    built.manager.OpenBimDialog();
    QVERIFY(callsOf(built.dialog()).isEmpty());
    QVERIFY(!built.dialog()->parentItem());
    QCOMPARE(callsOf(built.dialogs().last()), words("bim"));
}

void TestBimDialogBridge::secondDialogShowsOverItsOwnParent()
{
    BuiltDialog built;
    QQuickItem other(&built.frame);
    other.setPosition({7, 8});
    built.manager.CreateBimDialog(&other);
    QCOMPARE(built.dialogs().size(), 1);
    const auto* const dialog = other.findChild<QQuickItem*>(QString(), Qt::FindDirectChildrenOnly);
    QVERIFY(dialog);
    built.manager.OpenBimDialog();
    QCOMPARE(dialog->parentItem(), &other);
    QCOMPARE(dialog->position(), QPointF(7, 8));
    built.manager.onCloseDialog();
    built.manager.onOpenDialog();
    QCOMPARE(dialog->parentItem(), &other);
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
    // A host may destroy its scene before it shuts down the plug-in.
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

void TestBimDialogBridge::withoutItsContextThereIsNoDialog()
{
    Scene scene;
    CPdsMgr manager;
    manager.CreateBimDialog(&scene.item); // no context is set yet
    {
        QQmlContext context(scene.engine.rootContext());
        manager.SetQmlContext(&context);
    }
    manager.CreateBimDialog(&scene.item);
    QVERIFY(scene.item.children().isEmpty());
    manager.OpenBimDialog();
    manager.SetQmlContext(scene.engine.rootContext());
    manager.CreateBimDialog(&scene.item);
    QCOMPARE(scene.dialogs().size(), 1);
}

void TestBimDialogBridge::withoutItsEngineThereIsNoDialog()
{
    QQuickItem item;
    CPdsMgr manager;
    auto engine = std::make_unique<QQmlEngine>();
    QQmlContext context(engine->rootContext());
    manager.SetQmlContext(&context);
    engine.reset();
    manager.CreateBimDialog(&item);
    QVERIFY(item.children().isEmpty());
    manager.OpenBimDialog();
    manager.OpenDWGBimDialog();
}

void TestBimDialogBridge::withoutItsItemNothingOpens()
{
    BuiltDialog built;
    delete built.dialog();
    built.manager.OpenBimDialog();
    built.manager.OpenDWGBimDialog();
    QVERIFY(built.dialogs().isEmpty());
}

//! The object that owns the dialog can differ from the item in which the dialog is shown.
void TestBimDialogBridge::withoutItsParentNothingOpens()
{
    Scene scene;
    CPdsMgr manager;
    manager.SetQmlContext(scene.engine.rootContext());
    auto parent = std::make_unique<QQuickItem>(&scene.frame);
    manager.CreateBimDialog(parent.get());
    auto* const dialog = parent->findChild<QQuickItem*>(QString(), Qt::FindDirectChildrenOnly);
    QVERIFY(dialog);
    dialog->setParent(&scene.item);
    parent.reset();
    manager.OpenBimDialog();
    manager.OpenDWGBimDialog();
    QVERIFY(callsOf(dialog).isEmpty());
}

QTEST_MAIN(TestBimDialogBridge)
#include "test_bimdialogbridge.moc"
