#include "tour/bimtour.h"

#include "tour/chromium.h"
#include "tour/toursimulator.h"
#include "tour/uidriver.h"
#include "userinput/userinput.h"

#include <QAbstractItemModel>
#include <QImage>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>
#include <QUrl>

#include <algorithm>

namespace NelvoDevkit {

namespace {

const auto Civil = QStringLiteral("滨江文化中心 土建预算");
const auto Scheme = QStringLiteral("滨江文化中心 方案模型");
const auto Organisation = QStringLiteral("设计总院");
const auto Refusal = QStringLiteral("BIM工程不能重复导入");
const auto Component = QStringLiteral("循环水泵 1#");

QStringList texts(const QVector<QQuickItem*>& items, const char* property)
{
    QStringList found;
    for (const QQuickItem* item : items)
        found.append(item->property(property).toString());
    return found;
}

//! The row of the dialog with that model, or null.
QQuickItem* rowOf(const QString& model)
{
    for (QQuickItem* name : UserInput::findItems(QStringLiteral("nameText"))) {
        if (name->property("text").toString() == model)
            return name->parentItem();
    }
    return nullptr;
}

bool isDialogOpen()
{
    return UserInput::findItem(QStringLiteral("dialogTitle")) != nullptr;
}

} // namespace

BimTour::BimTour(UiDriver& ui, TourSimulator& simulator) : m_ui(ui), m_simulator(simulator) {}

void BimTour::walk()
{
    visit(QStringLiteral("26-bim-dialog"), &BimTour::bimDialog);
    visit(QStringLiteral("27-departments"), &BimTour::departments);
    visit(QStringLiteral("28-chosen-department"), &BimTour::departmentChosen);
    visit(QStringLiteral("29-model-search"), &BimTour::search);
    visit(QStringLiteral("30-download"), &BimTour::download);
    visit(QStringLiteral("31-downloaded"), &BimTour::downloaded);
    visit(QStringLiteral("32-second-import-refused"), &BimTour::secondImport);
    visit(QStringLiteral("33-main-project"), &BimTour::mainProject);
    visit(QStringLiteral("34-outline-model"), &BimTour::conversion);
    visit(QStringLiteral("35-dwg-dialog"), &BimTour::dwgDialog);
    visit(QStringLiteral("36-component-panel"), &BimTour::componentPanel);
    visit(QStringLiteral("37-web-view"), &BimTour::webView);
    visit(QStringLiteral("38-device-cleared"), &BimTour::deviceCleared);
    visit(QStringLiteral("39-pds-projects"), &BimTour::pdsProjects);
    visit(QStringLiteral("40-web-channel"), &BimTour::webChannel);
}

void BimTour::bimDialog()
{
    m_ui.click(QStringLiteral("logFilter1"));
    m_ui.press(QStringLiteral("bimButton"));
    m_ui.awaitText(QStringLiteral("dialogTitle"), "title", QStringLiteral("关联BIM模型"));
    awaitRows(m_simulator.modelNames());
    m_ui.require(!UserInput::findItem(QStringLiteral("outlineButton")),
                 QStringLiteral("outline models in a main project only"));
    takePicture();
}

void BimTour::departments()
{
    QQuickWindow* const window = m_ui.awaitItem(QStringLiteral("orgCheck"))->window();
    m_ui.focusByTab(window, QStringLiteral("orgCheck"));
    QTest::keyClick(window, Qt::Key_Space);
    m_ui.awaitItemWith(QStringLiteral("deptNameText"), "text", QStringLiteral("BIM 研发部"));
    QTest::keyClick(window, Qt::Key_Down);
    QTest::keyClick(window, Qt::Key_Down);
    const QStringList shown = texts(UserInput::findItems(QStringLiteral("deptNameText")), "text");
    m_ui.require(!shown.contains(QStringLiteral("江南水利工程局")) &&
                     !shown.contains(QStringLiteral("太湖流域分局")),
                 QStringLiteral("the units of this enterprise alone"));
    takePicture();
}

void BimTour::departmentChosen()
{
    QTest::keyClick(m_ui.awaitItem(QStringLiteral("orgCheck"))->window(), Qt::Key_Return);
    m_ui.awaitText(QStringLiteral("orgCheck"), "deptName", Organisation);
    const QStringList below = m_simulator.modelNames(Organisation);
    m_ui.require(below.size() > 1 && below.size() < m_simulator.modelNames().size(),
                 QStringLiteral("a part of the models"));
    awaitRows(below);
    takePicture();
}

void BimTour::search()
{
    m_ui.press(QStringLiteral("bimButton")); // opening it again shows all models again
    awaitRows(m_simulator.modelNames());
    m_ui.awaitText(QStringLiteral("orgCheck"), "deptName", QStringLiteral("所有工程"));
    m_ui.fill(QStringLiteral("searchBox"), "text", QStringLiteral("bim"));
    awaitRows({QStringLiteral("BIM 研发部 试验模型")});
    takePicture();
    m_ui.fill(QStringLiteral("searchBox"), "text", {});
    awaitRows(m_simulator.modelNames());
}

void BimTour::download()
{
    pressInRow(QStringLiteral("downloadButton"), Civil);
    awaitModels({Civil});
    const QQuickItem* const model = m_ui.awaitItem(QStringLiteral("model"));
    m_ui.await([model] { return model->property("percent").toInt() > 30; },
               QStringLiteral("a download under way"));
    // Grabs the window instead of the screen: the download continues while the screen is updated.
    m_ui.save(model->window()->grabWindow());
}

void BimTour::downloaded()
{
    awaitFinished(1);
    m_ui.awaitItemWith(QStringLiteral("pdsButton"), "modelName", Civil);
    takePicture();
}

void BimTour::secondImport()
{
    pressInRow(QStringLiteral("downloadButton"), Civil);
    awaitText(QStringLiteral("errorText"), Refusal);
    awaitModels({Civil});
    takePicture();
}

void BimTour::mainProject()
{
    m_ui.press(QStringLiteral("mainProjectButton"));
    m_ui.awaitItem(QStringLiteral("completionCheck"));
    m_ui.awaitItem(QStringLiteral("outlineButton"));
    // The main project does not have the model yet.
    pressInRow(QStringLiteral("downloadButton"), Civil);
    awaitText(QStringLiteral("errorText"), {});
    awaitModels({Civil, Civil});
    awaitFinished(2);
    takePicture();
}

void BimTour::conversion()
{
    m_ui.click(QStringLiteral("completionCheck"));
    pressInRow(QStringLiteral("outlineButton"), Scheme);
    m_ui.click(QStringLiteral("speedProprityCheck"));
    pressInRow(QStringLiteral("outlineButton"), Scheme);
    awaitModels({Civil, Civil, Scheme, Scheme});
    awaitFinished(4);
    m_ui.awaitLogLine(
        QStringLiteral("IPdsObserver::OnConvertSimplyMode: “%1”, completion first").arg(Scheme));
    m_ui.awaitLogLine(
        QStringLiteral("IPdsObserver::OnConvertSimplyMode: “%1”, performance first").arg(Scheme));
    takePicture();
}

void BimTour::dwgDialog()
{
    m_ui.press(QStringLiteral("dwgButton"));
    m_ui.awaitText(QStringLiteral("dialogTitle"), "title", QStringLiteral("关联DWG模型"));
    awaitRows(m_simulator.drawingNames());
    m_ui.require(!UserInput::findItem(QStringLiteral("outlineButton")) &&
                     !UserInput::findItem(QStringLiteral("completionCheck")),
                 QStringLiteral("no outline models of drawings"));
    takePicture();
}

void BimTour::componentPanel()
{
    m_ui.click(QStringLiteral("closeButton"));
    m_ui.await([] { return !isDialogOpen(); }, QStringLiteral("the dialog closed"));
    m_ui.awaitLogLine(QStringLiteral("IPdsObserver::OnBimDialogClosed"));
    m_ui.press(QStringLiteral("otherProjectButton"));

    const QString project = m_simulator.projectNames().constFirst();
    m_ui.click(QStringLiteral("project"), "projectName", project);
    m_ui.awaitItemWith(QStringLiteral("detailValue"), "text", project);
    m_ui.fill(QStringLiteral("serial0"), "text", QStringLiteral("PUMP-7"));
    m_ui.click(QStringLiteral("component"), "componentName", Component);
    m_ui.awaitText(QStringLiteral("deviceButton"), "btnText", QStringLiteral("PUMP-7"));
    takePicture();
}

void BimTour::webView()
{
    m_ui.click(QStringLiteral("deviceButton"));
    m_ui.awaitItem(QStringLiteral("webViewUrl"));
    const QString url = UserInput::findItem(QStringLiteral("webViewUrl"))->property("text").toString();
    m_ui.require(url.endsWith(QStringLiteral("/EditorWebExtern/page/device.html")),
                 QStringLiteral("the page for devices and not ") + url);
    takePicture();
    m_ui.click(QStringLiteral("webViewCloseButton"));
    m_ui.await([] { return !UserInput::findItem(QStringLiteral("webViewUrl")); },
               QStringLiteral("the web view closed"));
}

void BimTour::deviceCleared()
{
    QQuickItem* const button = m_ui.awaitItem(QStringLiteral("deviceButton"));
    QQuickItem* clear = nullptr;
    for (QQuickItem* candidate : UserInput::findItems(QStringLiteral("clearButton"))) {
        if (candidate->parentItem() == button)
            clear = candidate;
    }
    m_ui.require(clear != nullptr, QStringLiteral("the device's clear button"));
    UserInput::click(clear);
    m_ui.awaitText(QStringLiteral("deviceButton"), "btnText", {});
    m_ui.awaitText(QStringLiteral("serial0"), "text", {});
    takePicture();
}

void BimTour::pdsProjects()
{
    m_ui.click(QStringLiteral("pdsButton"), "modelName", Civil);
    // The drawing and the imported model are no PDS projects.
    const QStringList expected{QStringLiteral("地下室"), QStringLiteral("裙房"), QStringLiteral("塔楼")};
    m_ui.await([&] { return texts(UserInput::findItems(QStringLiteral("pdsProject")), "text") == expected; },
               expected.join(QStringLiteral(", ")));
    for (const QString& name : {expected.first(), expected.last()}) {
        m_ui.click(QStringLiteral("pdsProject"), "text", name);
        const QQuickItem* const row = m_ui.awaitItemWith(QStringLiteral("pdsProject"), "text", name);
        m_ui.await([row] { return row->property("checked").toBool(); }, name + QStringLiteral(" ticked"));
    }
    takePicture();
    m_ui.click(QStringLiteral("pdsBackButton"));
    m_ui.awaitItem(QStringLiteral("model"));
}

void BimTour::webChannel()
{
    m_ui.click(QStringLiteral("logFilter0"));
    const QQuickItem* const button = m_ui.awaitItem(QStringLiteral("webChannelButton"));
    const QUrl page = button->property("page").toUrl();
    m_ui.awaitLogLine(QStringLiteral("web channel: ") + page.toString());
    if (Chromium::isInstalled())
        lookAround(page);
    else
        report(QStringLiteral("tour: no chromium on the PATH; the web channel's page is skipped"));
}

void BimTour::lookAround(const QUrl& page) const
{
    Chromium browser;
    const bool isOpen = browser.open(page);
    m_ui.require(isOpen, browser.error());
    m_ui.await(
        [&browser] { return browser.dom().contains(QStringLiteral("class=\"found\">bimObject found</p>")); },
        QStringLiteral("bimObject in the browser"));
    m_ui.save(browser.picture());
}

void BimTour::visit(const QString& station, void (BimTour::*what)())
{
    m_ui.arriveAt(station);
    (this->*what)();
}

//! Waits until the dialog's list has those models. Rows outside of the view need not exist.
void BimTour::awaitRows(const QStringList& names) const
{
    m_ui.await(
        [&names] {
            const QQuickItem* const list = UserInput::findItem(QStringLiteral("searchView"));
            const QStringList shown = texts(UserInput::findItems(QStringLiteral("nameText")), "text");
            return list && list->property("count").toInt() == names.size() && !shown.isEmpty() &&
                   std::all_of(shown.begin(), shown.end(),
                               [&names](const QString& name) { return names.contains(name); });
        },
        names.join(QStringLiteral(", ")));
}

void BimTour::pressInRow(const QString& button, const QString& model) const
{
    m_ui.await([&model] { return rowOf(model) != nullptr; }, model);
    m_ui.awaitDrawn(rowOf(model)->window());
    for (QQuickItem* candidate : UserInput::findItems(button)) {
        if (candidate->parentItem() == rowOf(model)) {
            UserInput::click(candidate);
            return;
        }
    }
    m_ui.require(false, QStringLiteral("%1 of “%2”").arg(button, model));
}

void BimTour::awaitModels(const QStringList& names) const
{
    m_ui.await([&] { return modelData("name") == names; },
               QStringLiteral("imported: ") + names.join(QStringLiteral(", ")));
}

//! Waits until that number of downloads and conversions is complete.
void BimTour::awaitFinished(int count) const
{
    m_ui.await([&] { return modelData("percent").count(QStringLiteral("100")) == count; },
               QStringLiteral("%1 downloads and conversions done").arg(count));
}

//! The values of that role in the host's list of models.
QStringList BimTour::modelData(const QByteArray& role) const
{
    const QQuickItem* const list = m_ui.awaitItem(QStringLiteral("models"));
    const auto* const models = list->property("model").value<QAbstractItemModel*>();
    QStringList found;
    for (int row = 0; row < models->rowCount(); ++row)
        found.append(models->index(row, 0).data(models->roleNames().key(role)).toString());
    return found;
}

void BimTour::awaitText(const QString& item, const QString& text) const
{
    m_ui.awaitText(item, "text", text);
}

void BimTour::takePicture() const
{
    m_ui.awaitNewestLine();
    m_ui.takePicture(m_ui.awaitItem(QStringLiteral("logList"))->window());
}

} // namespace NelvoDevkit
