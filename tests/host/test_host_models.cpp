#include "host/componentcard.h"
#include "host/modeldesk.h"
#include "host/webview.h"

#include "pluginstandin.h"

#include <QAbstractItemModelTester>
#include <QQmlEngine>
#include <QtTest>

#include <memory>

using NelvoDevkit::ComponentCard;
using NelvoDevkit::DeviceList;
using NelvoDevkit::ImportedModel;
using NelvoDevkit::ImportedModels;
using NelvoDevkit::LogEntry;
using NelvoDevkit::LogModel;
using NelvoDevkit::ModelDesk;
using NelvoDevkit::WebView;

//! The host's list of imported BIM models, and its objects for the plug-in's pages.
class TestHostModels : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void callsInTheirOrder();
    void pagesFindTheDesk();
    void dialogEndsBeforeTheScene();
    void missingDialogIsTold();
    void treeIsThatOfTheLastSignIn();
    void downloadComesIn();
    void modelWithoutNameShowsItsGuid();
    void secondImportIsRefused();
    void mainProjectHasItsOwnModels();
    void conversionsAreListed();
    void everyCallIsLogged();

    void importedModelsAsRows();
    void modelsComeInSideBySide();

    void cardFollowsTheDevices();
    void cardTakesKnownComponentsOnly();
    void cardClearsTheDevice();

    void webPageIsRemembered();

private:
    PdsStandIn& manager() { return m_plugin->models; }
    QStringList logged(LogEntry::Kind kind) const;
    QStringList column(int role) const;
    bool settle() const;

    std::unique_ptr<PluginStandIn> m_plugin;
    std::unique_ptr<LogModel> m_log;
    std::unique_ptr<ModelDesk> m_desk;
};

namespace {

constexpr int Patience = 30000;

const QString Pump = QStringLiteral("pump-guid");

QStringList rows(const QAbstractItemModel& model, const QModelIndex& parent)
{
    QStringList found;
    for (int row = 0; row < model.rowCount(parent); ++row)
        found.append(model.index(row, 0, parent).data().toString());
    return found;
}

} // namespace

void TestHostModels::init()
{
    m_plugin = std::make_unique<PluginStandIn>();
    m_log = std::make_unique<LogModel>();
    m_desk = std::make_unique<ModelDesk>(*m_plugin, *m_log);
    manager().names = {{"g-1", "Pump house"}, {"g-2", "Bridge"}};
}

void TestHostModels::cleanup()
{
    m_desk.reset();
    m_log.reset();
    m_plugin.reset();
}

QStringList TestHostModels::logged(LogEntry::Kind kind) const
{
    QCoreApplication::processEvents(); // the log adds its entries in the event loop
    QStringList texts;
    for (int row = 0; row < m_log->rowCount(); ++row) {
        if (m_log->entry(row).kind == kind)
            texts.append(m_log->entry(row).text);
    }
    return texts;
}

//! The values of `role` in all rows of the desk's models.
QStringList TestHostModels::column(int role) const
{
    QStringList found;
    for (int row = 0; row < m_desk->models()->rowCount(); ++row)
        found.append(m_desk->models()->index(row).data(role).toString());
    return found;
}

//! Waits until all imports are complete.
bool TestHostModels::settle() const
{
    return QTest::qWaitFor(
        [this] {
            const QStringList percents = column(ImportedModels::PercentRole);
            return percents.count("100") == percents.size();
        },
        Patience);
}

void TestHostModels::callsInTheirOrder()
{
    QQmlEngine engine;
    QQuickItem scene;
    QCOMPARE(manager().plugin, static_cast<NelvoSDK::INelvoSDKPlugin*>(m_plugin.get()));
    QVERIFY(!m_desk->isReady());
    m_desk->publish(engine.rootContext());
    m_desk->createDialog(&scene);
    m_desk->readModels(0);
    QVERIFY(m_desk->isReady());
    m_desk->openBimDialog();
    m_desk->openDwgDialog();
    m_desk.reset();
    QCOMPARE(manager().calls, (QStringList{"SetPlugin", "Attach", "SetQmlContext", "CreateBimDialog",
                                           "InitBimData", "OpenBimDialog", "OpenDWGBimDialog", "Detach"}));
}

void TestHostModels::pagesFindTheDesk()
{
    QQmlEngine engine;
    m_desk->publish(engine.rootContext());
    auto* const control = engine.rootContext()->contextProperty("bimControl").value<QObject*>();
    QVERIFY(control != nullptr);
    bool isValid = false;
    QVERIFY(QMetaObject::invokeMethod(control, "checkBimProjValid", Q_RETURN_ARG(bool, isValid),
                                      Q_ARG(QString, "g-1"), Q_ARG(bool, true)));
    QVERIFY(isValid);
    auto* const context = engine.rootContext()->contextProperty("editConext").value<QObject*>();
    QVERIFY(context != nullptr);
    QCOMPARE(context->property("isMainProject"), QVariant(false));
    m_desk->setMainProject(true);
    QCOMPARE(context->property("isMainProject"), QVariant(true));
}

void TestHostModels::dialogEndsBeforeTheScene()
{
    QQmlEngine engine;
    QQuickItem scene;
    m_desk->destroyDialog(); // without a dialog
    m_desk->publish(engine.rootContext());
    m_desk->createDialog(&scene);
    QCOMPARE(scene.children().size(), 1);
    m_desk->destroyDialog();
    QVERIFY(scene.children().isEmpty());
    QVERIFY(logged(LogEntry::Kind::Warning).isEmpty());
}

void TestHostModels::missingDialogIsTold()
{
    QQmlEngine engine;
    QQuickItem scene;
    manager().dialogLoads = false;
    m_desk->publish(engine.rootContext());
    m_desk->createDialog(&scene);
    QCOMPARE(logged(LogEntry::Kind::Warning), QStringList("the BIM dialog did not load"));
}

void TestHostModels::treeIsThatOfTheLastSignIn()
{
    QQmlEngine engine;
    m_desk->publish(engine.rootContext());
    const QStandardItemModel& tree = manager().organisation;
    const auto signIn = [this](const QString& root, const QStringList& firstLevel) {
        m_plugin->projects.rootName = root;
        m_plugin->projects.firstLevel = firstLevel;
        m_plugin->projects.ReflushProjOrgInfo({});
    };
    signIn("first", {"a", "b"});
    m_desk->readModels(0);
    QCOMPARE(rows(tree, {}), QStringList("first"));
    QCOMPARE(rows(tree, tree.index(0, 0)), (QStringList{"a", "b"}));
    signIn("second", {"c"});
    m_desk->readModels(2);
    QCOMPARE(rows(tree, {}), QStringList("second"));
    QCOMPARE(rows(tree, tree.index(0, 0)), QStringList("c"));
}

void TestHostModels::downloadComesIn()
{
    manager().observer->OnDownLoadBimProj({"g-1"});
    QCOMPARE(column(ImportedModels::NameRole), QStringList("Pump house"));
    QCOMPARE(column(ImportedModels::PercentRole), QStringList("0"));
    QCOMPARE(column(ImportedModels::ReadableRole), QStringList("false"));
    QVERIFY(settle());
    QCOMPARE(column(ImportedModels::ReadableRole), QStringList("true"));
    QVERIFY(logged(LogEntry::Kind::Host).contains("下载 “Pump house”: done, in another project"));
}

void TestHostModels::modelWithoutNameShowsItsGuid()
{
    manager().observer->OnDownLoadBimProj({"g-9"});
    QCOMPARE(column(ImportedModels::NameRole), QStringList("g-9"));
}

void TestHostModels::secondImportIsRefused()
{
    QVERIFY(m_desk->checkBimProjValid("g-1", false));
    manager().observer->OnDownLoadBimProj({"g-1"});
    QVERIFY(!m_desk->checkBimProjValid("g-1", false)); // already during the import
    QVERIFY(m_desk->checkBimProjValid("g-2", false));
    QVERIFY(settle());
    QVERIFY(!m_desk->checkBimProjValid("g-1", false));
}

void TestHostModels::mainProjectHasItsOwnModels()
{
    manager().observer->OnDownLoadBimProj({"g-1"});
    QVERIFY(m_desk->checkBimProjValid("g-1", true));
    QSignalSpy changed(m_desk.get(), &ModelDesk::mainProjectChanged);
    m_desk->setMainProject(true);
    m_desk->setMainProject(true);
    QCOMPARE(changed.size(), 1);
    manager().observer->OnDownLoadBimProj({"g-1"});
    QVERIFY(!m_desk->checkBimProjValid("g-1", true));
    QCOMPARE(column(ImportedModels::MainProjectRole), (QStringList{"false", "true"}));
}

void TestHostModels::conversionsAreListed()
{
    m_desk->setMainProject(true);
    manager().observer->OnConvertSimplyMode("g-2", true);
    manager().observer->OnConvertSimplyMode("g-2", false);
    QCOMPARE(column(ImportedModels::NameRole), (QStringList{"Bridge", "Bridge"}));
    QCOMPARE(column(ImportedModels::KindRole),
             (QStringList{"概要模型（完整度优先）", "概要模型（性能优先）"}));
    QVERIFY(settle());
    // An outline model has no PDS projects. The user may still import the complete model.
    QCOMPARE(column(ImportedModels::ReadableRole), (QStringList{"false", "false"}));
    QVERIFY(m_desk->checkBimProjValid("g-2", true));
}

void TestHostModels::everyCallIsLogged()
{
    QQuickItem dialog;
    NelvoSDK::IPdsObserver& observer = *manager().observer;
    observer.OnBimDialogOpened(&dialog);
    observer.OnBimProjListCleared();
    observer.OnBimProjListSynced();
    m_desk->checkBimProjValid("g-1", true);
    observer.OnDownLoadBimProj({"g-1", "g-2"});
    m_desk->checkBimProjValid("g-1", false);
    observer.OnConvertSimplyMode("g-2", true);
    observer.OnConvertSimplyMode("%1", false);
    observer.OnBimDialogClosed(&dialog);
    QCOMPARE(
        logged(LogEntry::Kind::Observer),
        (QStringList{"IPdsObserver::OnBimDialogOpened", "IPdsObserver::OnBimProjListCleared",
                     "IPdsObserver::OnBimProjListSynced",
                     "bimControl.checkBimProjValid: “Pump house” into the main project: true",
                     "IPdsObserver::OnDownLoadBimProj: “Pump house”, g-1",
                     "IPdsObserver::OnDownLoadBimProj: “Bridge”, g-2",
                     "bimControl.checkBimProjValid: “Pump house” into another project: false, it is there",
                     "IPdsObserver::OnConvertSimplyMode: “Bridge”, completion first",
                     "IPdsObserver::OnConvertSimplyMode: “%1”, performance first",
                     "IPdsObserver::OnBimDialogClosed"}));
}

void TestHostModels::importedModelsAsRows()
{
    ImportedModels models;
    const QAbstractItemModelTester tester(&models, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QSignalSpy finished(&models, &ImportedModels::finished);
    QSignalSpy counted(&models, &ImportedModels::countChanged);
    models.add({"g", "name", ImportedModel::Kind::Download, true, 55});
    QCOMPARE(counted.size(), 1);
    QCOMPARE(models.index(0).data(ImportedModels::PercentRole).toInt(), 0);
    QCOMPARE(models.index(0).data(ImportedModels::GuidRole).toString(), QString("g"));
    QVERIFY(models.has("g", true));
    QVERIFY(!models.has("g", false));
    QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, Patience);
    QCOMPARE(models.index(0).data(ImportedModels::PercentRole).toInt(), 100);
    const auto roles = models.roleNames();
    for (auto role = roles.begin(); role != roles.end(); ++role)
        QVERIFY2(models.index(0).data(role.key()).isValid(), role.value().constData());
    QVERIFY(!models.data({}, ImportedModels::NameRole).isValid());
}

//! A later import does not wait for an earlier one and does not restart it.
void TestHostModels::modelsComeInSideBySide()
{
    ImportedModels models;
    QStringList finished;
    connect(&models, &ImportedModels::finished, this,
            [&finished](const ImportedModel& model) { finished.append(model.guid); });
    const auto percent = [&models](int row) {
        return models.index(row).data(ImportedModels::PercentRole).toInt();
    };
    models.add({"early", {}, ImportedModel::Kind::Download, true, 0});
    QTRY_VERIFY_WITH_TIMEOUT(percent(0) > 20, Patience);
    models.add({"late", {}, ImportedModel::Kind::Download, true, 0});
    QTRY_VERIFY_WITH_TIMEOUT(percent(1) > 0, Patience);
    QVERIFY(percent(0) > percent(1));
    QTRY_COMPARE_WITH_TIMEOUT(finished, (QStringList{"early", "late"}), Patience);
    models.add({"last", {}, ImportedModel::Kind::Download, true, 0});
    QTRY_COMPARE_WITH_TIMEOUT(finished, (QStringList{"early", "late", "last"}), Patience);
}

void TestHostModels::cardFollowsTheDevices()
{
    DeviceList devices;
    ComponentCard card(devices);
    devices.setProject("p-1");
    const QString guid = devices.index(1).data(DeviceList::GuidRole).toString();
    QSignalSpy selected(&card, &ComponentCard::selectionChanged);
    QSignalSpy changed(&card, &ComponentCard::deviceChanged);
    card.select(guid);
    QCOMPARE(card.currentComp(), guid);
    QCOMPARE(card.componentName(), devices.index(1).data().toString());
    QCOMPARE(card.deviceId(), QString());
    QCOMPARE(selected.size(), 1);
    changed.clear();
    devices.setData(devices.index(1), "SN-1", DeviceList::SerialRole);
    QCOMPARE(changed.size(), 1);
    QCOMPARE(card.deviceId(), QString("SN-1"));
    // The other project has other components, so the card has no selection.
    devices.setProject("p-2");
    QCOMPARE(card.currentComp(), QString());
    QCOMPARE(card.deviceId(), QString());
    QCOMPARE(selected.size(), 2);
}

void TestHostModels::cardTakesKnownComponentsOnly()
{
    DeviceList devices;
    ComponentCard card(devices);
    devices.setProject("p-1");
    QSignalSpy selected(&card, &ComponentCard::selectionChanged);
    card.select(Pump);
    QCOMPARE(card.currentComp(), QString());
    QVERIFY(selected.isEmpty());
    card.select(devices.index(0).data(DeviceList::GuidRole).toString());
    card.select({});
    QCOMPARE(card.currentComp(), QString());
    QCOMPARE(selected.size(), 2);
}

void TestHostModels::cardClearsTheDevice()
{
    DeviceList devices;
    ComponentCard card(devices);
    devices.setProject("p-1");
    devices.setData(devices.index(0), "SN-0", DeviceList::SerialRole);
    devices.setData(devices.index(1), "SN-1", DeviceList::SerialRole);
    card.select(devices.index(1).data(DeviceList::GuidRole).toString());
    card.clearDeviceData(Pump); // no component of this project
    QCOMPARE(devices.boundCount(), 2);
    QVERIFY(QMetaObject::invokeMethod(&card, "clearDeviceData", Q_ARG(QString, card.currentComp())));
    QCOMPARE(card.deviceId(), QString());
    QCOMPARE(devices.index(1).data(DeviceList::SerialRole).toString(), QString());
    QCOMPARE(devices.index(0).data(DeviceList::SerialRole).toString(), QString("SN-0"));
}

void TestHostModels::webPageIsRemembered()
{
    WebView views(*m_log);
    QSignalSpy asked(&views, &WebView::asked);
    for (int times = 0; times < 2; ++times) {
        QVERIFY(QMetaObject::invokeMethod(&views, "openWeb", Q_ARG(QString, "/app/page.html"),
                                          Q_ARG(QRectF, QRectF(0, 0, 368, 440))));
    }
    QCOMPARE(asked.size(), 2);
    QCOMPARE(views.url(), QString("/app/page.html"));
    QCOMPARE(views.rect(), QRectF(0, 0, 368, 440));
    QCOMPARE(logged(LogEntry::Kind::Observer).last(),
             QString("webViewMgr.openWeb: /app/page.html, 368 × 440"));
}

QTEST_MAIN(TestHostModels)
#include "test_host_models.moc"
