#include "tour/projecttour.h"

#include "tour/loginform.h"
#include "tour/otherhost.h"
#include "tour/toursimulator.h"
#include "tour/uidriver.h"
#include "userinput/userinput.h"

#include <QAbstractItemModel>
#include <QJsonObject>
#include <QQuickItem>
#include <QQuickWindow>

namespace NelvoDevkit {

namespace {

const auto User = QStringLiteral("zhangwei");
const auto Password = QStringLiteral("123456");
const auto Department = QStringLiteral("结构设计所");
const auto LocalList = QStringLiteral("localProjects");
const auto ServerList = QStringLiteral("serverProjects");
const auto SceneId = QStringLiteral("scene-1001-01");
constexpr int OtherHostMs = 120000; // a program starts and signs in

//! The names in a view's model, in its order.
QStringList names(const QQuickItem* view)
{
    const auto* const model = view->property("model").value<QAbstractItemModel*>();
    QStringList found;
    for (int row = 0; row < model->rowCount(); ++row)
        found.append(model->index(row, 0).data().toString());
    return found;
}

QStringList sorted(QStringList list)
{
    list.sort();
    return list;
}

} // namespace

ProjectTour::ProjectTour(UiDriver& ui, TourSimulator& simulator) : m_ui(ui), m_simulator(simulator) {}

void ProjectTour::walk()
{
    visit(QStringLiteral("15-organisation-tree"), &ProjectTour::organisationTree);
    visit(QStringLiteral("16-projects"), &ProjectTour::projects);
    visit(QStringLiteral("17-new-project"), &ProjectTour::newProject);
    visit(QStringLiteral("18-uploaded-project"), &ProjectTour::uploadedProject);
    visit(QStringLiteral("19-renamed-project"), &ProjectTour::renamedProject);
    visit(QStringLiteral("20-device-bindings"), &ProjectTour::deviceBindings);
    visit(QStringLiteral("21-failure-in-the-log"), &ProjectTour::failure);
    visit(QStringLiteral("22-refresh"), &ProjectTour::refresh);
    visit(QStringLiteral("23-smallest-window"), &ProjectTour::smallestWindow);
    visit(QStringLiteral("24-pushed-out"), &ProjectTour::pushedOut);
    visit(QStringLiteral("25-signed-in-again"), &ProjectTour::signedInAgain);
}

void ProjectTour::organisationTree()
{
    m_ui.click(QStringLiteral("logFilter0"));
    const QStringList all = m_simulator.unitNames();
    const QQuickItem* const tree = m_ui.awaitItem(QStringLiteral("orgTree"));
    m_ui.await([&] { return names(tree) == all; }, QStringLiteral("the simulator's tree"));

    // A click collapses an organisation and hides its five units.
    const auto folding = QStringLiteral("设计总院");
    m_ui.click(QStringLiteral("orgUnit"), "unitName", folding);
    m_ui.await([&] { return names(tree).size() == all.size() - 5; }, QStringLiteral("a folded unit"));
    takePicture();
    m_ui.click(QStringLiteral("orgUnit"), "unitName", folding);
    m_ui.await([&] { return names(tree) == all; }, QStringLiteral("the unit unfolded again"));
}

void ProjectTour::projects()
{
    awaitProjects(ServerList, m_simulator.projectNames());
    selectProject(m_simulator.projectName(SceneId));
    m_ui.awaitItemWith(QStringLiteral("detailValue"), "text", SceneId);
    m_ui.awaitItemWith(QStringLiteral("detailValue"), "text", QStringLiteral("远景建筑设计研究院（1001）"));
    takePicture();
}

void ProjectTour::newProject()
{
    m_ui.click(QStringLiteral("orgUnit"), "unitName", Department);
    createProject(QStringLiteral("Harbour bridge"));
    awaitProjects(LocalList, {QStringLiteral("Harbour bridge")});
    m_ui.fill(QStringLiteral("localName"), "text", QStringLiteral("Harbour tunnel"));
    m_ui.press(QStringLiteral("localRenameButton"));
    awaitProjects(LocalList, {QStringLiteral("Harbour tunnel")});
    m_ui.require(!m_simulator.projectNames().contains(QStringLiteral("Harbour tunnel")),
                 QStringLiteral("a project that the service does not know yet"));
    takePicture();
}

void ProjectTour::uploadedProject()
{
    m_ui.press(QStringLiteral("uploadButton"));
    awaitProjects(LocalList, {});
    m_ui.require(m_simulator.projectNames().contains(QStringLiteral("Harbour tunnel")),
                 QStringLiteral("the new project on the service"));
    awaitProjects(ServerList, m_simulator.projectNames());
    takePicture();
}

void ProjectTour::renamedProject()
{
    selectProject(m_simulator.projectName(SceneId));
    m_ui.fill(QStringLiteral("serverName"), "text", QStringLiteral("Riverside arts centre"));
    m_ui.press(QStringLiteral("serverRenameButton"));
    m_ui.awaitItemWith(QStringLiteral("project"), "projectName", QStringLiteral("Riverside arts centre"));
    m_ui.require(m_simulator.projectName(SceneId) == QStringLiteral("Riverside arts centre"),
                 QStringLiteral("the new name on the service"));
    takePicture();
}

void ProjectTour::deviceBindings()
{
    m_ui.fill(QStringLiteral("serial0"), "text", QStringLiteral("PUMP-2024-0117"));
    m_ui.fill(QStringLiteral("serial2"), "text", QStringLiteral("TH-88-2041"));
    m_ui.fill(QStringLiteral("serial3"), "text", QStringLiteral("CAM-S-003"));
    m_ui.press(QStringLiteral("bindButton"));
    awaitQuiet();
    const QJsonObject bindings = m_simulator.bindings(SceneId);
    m_ui.require(bindings.value(QStringLiteral("deletes")).toInt() == 1 &&
                     bindings.value(QStringLiteral("elements")).toInt() == 3,
                 QStringLiteral("three bindings on the service"));
    takePicture();
}

void ProjectTour::failure()
{
    m_simulator.addFault(QStringLiteral("fault=status&value=503&method=POST&path=/scene/project&once=1"));
    createProject(QStringLiteral("Ill-fated"));
    m_ui.press(QStringLiteral("uploadButton"));
    m_ui.awaitLogLine(QStringLiteral("CProjectInfoMgr::OnUploadProject add project /scene/project falid"));
    m_ui.awaitLogLine(QStringLiteral("\"Ill-fated\" is not on the service; it stays local"));
    awaitQuiet();
    awaitProjects(LocalList, {QStringLiteral("Ill-fated")});
    takePicture();

    m_ui.press(QStringLiteral("uploadButton"));
    awaitProjects(LocalList, {});
    m_ui.require(m_simulator.projectNames().contains(QStringLiteral("Ill-fated")),
                 QStringLiteral("the project on the service at the second attempt"));
}

void ProjectTour::refresh()
{
    m_simulator.addProject(QStringLiteral("from-elsewhere"), QStringLiteral("同事新建的项目"),
                           QStringLiteral("1001-21"));
    m_ui.press(QStringLiteral("refreshButton"));
    m_ui.awaitItemWith(QStringLiteral("project"), "projectName", QStringLiteral("同事新建的项目"));
    awaitProjects(ServerList, m_simulator.projectNames());
    selectProject(QStringLiteral("同事新建的项目"));
    m_ui.awaitItemWith(QStringLiteral("detailValue"), "text", QStringLiteral("BIM 研发部"));
    takePicture();
}

void ProjectTour::smallestWindow()
{
    QQuickWindow* const window = m_ui.awaitItem(ServerList)->window();
    const QSize before = window->size();
    window->resize(window->minimumSize());
    m_ui.await([window] { return window->size() == window->minimumSize(); },
               QStringLiteral("the window at its smallest"));
    takePicture();
    window->resize(before);
    m_ui.await([&] { return window->size() == before; }, QStringLiteral("the window as it was"));
}

//! The session watch sends a request every ten seconds.
void ProjectTour::pushedOut()
{
    OtherHost other;
    QString error;
    m_ui.require(other.start(User, Password, &error), error);
    m_ui.await([&other] { return other.isSignedIn() || !other.isRunning(); },
               QStringLiteral("the other host signed in"), OtherHostMs);
    m_ui.require(other.isSignedIn(), QStringLiteral("the other host signed in: ") + other.output());
    m_ui.awaitText(QStringLiteral("notice"), "text", QStringLiteral("您的帐号在另一地点登录，您被迫下线"));
    m_ui.awaitLogLine(QStringLiteral("IMessageObserver::OnMessageFirst: 您的帐号在另一地点登录，您被迫下线"));
    // Without a window manager, the other host's window is in front.
    m_ui.awaitItem(ServerList)->window()->raise();
    takePicture();
}

void ProjectTour::signedInAgain()
{
    m_ui.press(QStringLiteral("noticeSignInButton"));
    signInByForm(m_ui, User, Password);
    m_ui.await([] { return UserInput::findItem(QStringLiteral("notice")) == nullptr; },
               QStringLiteral("the notice gone"));
    awaitQuiet();
    awaitProjects(ServerList, m_simulator.projectNames());
    const QStringList all = m_simulator.unitNames();
    const QQuickItem* const tree = m_ui.awaitItem(QStringLiteral("orgTree"));
    m_ui.await([&] { return names(tree) == all; }, QStringLiteral("the tree, once"));
    takePicture();
}

void ProjectTour::visit(const QString& station, void (ProjectTour::*what)())
{
    m_ui.arriveAt(station);
    (this->*what)();
}

void ProjectTour::selectProject(const QString& name) const
{
    m_ui.click(QStringLiteral("project"), "projectName", name);
    m_ui.awaitItemWith(QStringLiteral("detailValue"), "text", name);
}

void ProjectTour::createProject(const QString& name) const
{
    m_ui.fill(QStringLiteral("newName"), "text", name);
    m_ui.press(QStringLiteral("createButton"));
    m_ui.awaitText(QStringLiteral("localName"), "text", name);
}

void ProjectTour::awaitProjects(const QString& list, const QStringList& expected) const
{
    const QQuickItem* const view = m_ui.awaitItem(list);
    m_ui.await([&] { return sorted(names(view)) == sorted(expected); },
               QStringLiteral("%1: %2").arg(list, expected.join(QStringLiteral(", "))));
}

//! Waits until no operation runs.
void ProjectTour::awaitQuiet() const
{
    m_ui.awaitText(QStringLiteral("activity"), "text", {});
}

void ProjectTour::takePicture() const
{
    awaitQuiet();
    m_ui.awaitNewestLine();
    m_ui.takePicture(m_ui.awaitItem(ServerList)->window());
}

} // namespace NelvoDevkit
