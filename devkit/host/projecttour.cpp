#include "host/projecttour.h"

#include "host/loginform.h"
#include "host/otherhost.h"
#include "host/toursimulator.h"
#include "host/visitor.h"

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

//! The names that a view's model has, in its order.
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

ProjectTour::ProjectTour(Visitor& visitor, TourSimulator& simulator)
    : m_visitor(visitor), m_simulator(simulator)
{}

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
    m_visitor.click(QStringLiteral("logFilter0"));
    const QStringList all = m_simulator.unitNames();
    const QQuickItem* const tree = m_visitor.awaitItem(QStringLiteral("orgTree"));
    m_visitor.await([&] { return names(tree) == all; }, QStringLiteral("the simulator's tree"));

    // An organisation folds with a click, and then without its five units.
    const auto folding = QStringLiteral("设计总院");
    m_visitor.click(QStringLiteral("orgUnit"), "unitName", folding);
    m_visitor.await([&] { return names(tree).size() == all.size() - 5; }, QStringLiteral("a folded unit"));
    takePicture();
    m_visitor.click(QStringLiteral("orgUnit"), "unitName", folding);
    m_visitor.await([&] { return names(tree) == all; }, QStringLiteral("the unit unfolded again"));
}

void ProjectTour::projects()
{
    awaitProjects(ServerList, m_simulator.projectNames());
    selectProject(m_simulator.projectName(SceneId));
    m_visitor.awaitItemWith(QStringLiteral("detailValue"), "text", SceneId);
    m_visitor.awaitItemWith(QStringLiteral("detailValue"), "text",
                            QStringLiteral("远景建筑设计研究院（1001）"));
    takePicture();
}

void ProjectTour::newProject()
{
    m_visitor.click(QStringLiteral("orgUnit"), "unitName", Department);
    createProject(QStringLiteral("Harbour bridge"));
    awaitProjects(LocalList, {QStringLiteral("Harbour bridge")});
    m_visitor.fill(QStringLiteral("localName"), "text", QStringLiteral("Harbour tunnel"));
    m_visitor.press(QStringLiteral("localRenameButton"));
    awaitProjects(LocalList, {QStringLiteral("Harbour tunnel")});
    m_visitor.require(!m_simulator.projectNames().contains(QStringLiteral("Harbour tunnel")),
                      QStringLiteral("a project that the service does not know yet"));
    takePicture();
}

void ProjectTour::uploadedProject()
{
    m_visitor.press(QStringLiteral("uploadButton"));
    awaitProjects(LocalList, {});
    m_visitor.require(m_simulator.projectNames().contains(QStringLiteral("Harbour tunnel")),
                      QStringLiteral("the new project on the service"));
    awaitProjects(ServerList, m_simulator.projectNames());
    takePicture();
}

void ProjectTour::renamedProject()
{
    selectProject(m_simulator.projectName(SceneId));
    m_visitor.fill(QStringLiteral("serverName"), "text", QStringLiteral("Riverside arts centre"));
    m_visitor.press(QStringLiteral("serverRenameButton"));
    m_visitor.awaitItemWith(QStringLiteral("project"), "projectName",
                            QStringLiteral("Riverside arts centre"));
    m_visitor.require(m_simulator.projectName(SceneId) == QStringLiteral("Riverside arts centre"),
                      QStringLiteral("the new name on the service"));
    takePicture();
}

void ProjectTour::deviceBindings()
{
    m_visitor.fill(QStringLiteral("serial0"), "text", QStringLiteral("PUMP-2024-0117"));
    m_visitor.fill(QStringLiteral("serial2"), "text", QStringLiteral("TH-88-2041"));
    m_visitor.fill(QStringLiteral("serial3"), "text", QStringLiteral("CAM-S-003"));
    m_visitor.press(QStringLiteral("bindButton"));
    awaitQuiet();
    const QJsonObject bindings = m_simulator.bindings(SceneId);
    m_visitor.require(bindings.value(QStringLiteral("deletes")).toInt() == 1 &&
                          bindings.value(QStringLiteral("elements")).toInt() == 3,
                      QStringLiteral("three bindings on the service"));
    takePicture();
}

void ProjectTour::failure()
{
    m_simulator.addFault(QStringLiteral("fault=status&value=503&method=POST&path=/scene/project&once=1"));
    createProject(QStringLiteral("Ill-fated"));
    m_visitor.press(QStringLiteral("uploadButton"));
    m_visitor.awaitLogLine(
        QStringLiteral("CProjectInfoMgr::OnUploadProject add project /scene/project falid"));
    m_visitor.awaitLogLine(QStringLiteral("\"Ill-fated\" is not on the service; it stays local"));
    awaitQuiet();
    awaitProjects(LocalList, {QStringLiteral("Ill-fated")});
    takePicture();

    m_visitor.press(QStringLiteral("uploadButton"));
    awaitProjects(LocalList, {});
    m_visitor.require(m_simulator.projectNames().contains(QStringLiteral("Ill-fated")),
                      QStringLiteral("the project on the service at the second attempt"));
}

void ProjectTour::refresh()
{
    m_simulator.addProject(QStringLiteral("from-elsewhere"), QStringLiteral("同事新建的项目"),
                           QStringLiteral("1001-21"));
    m_visitor.press(QStringLiteral("refreshButton"));
    m_visitor.awaitItemWith(QStringLiteral("project"), "projectName", QStringLiteral("同事新建的项目"));
    awaitProjects(ServerList, m_simulator.projectNames());
    selectProject(QStringLiteral("同事新建的项目"));
    m_visitor.awaitItemWith(QStringLiteral("detailValue"), "text", QStringLiteral("BIM 研发部"));
    takePicture();
}

void ProjectTour::smallestWindow()
{
    QQuickWindow* const window = m_visitor.awaitItem(ServerList)->window();
    const QSize before = window->size();
    window->resize(window->minimumSize());
    m_visitor.await([window] { return window->size() == window->minimumSize(); },
                    QStringLiteral("the window at its smallest"));
    takePicture();
    window->resize(before);
    m_visitor.await([&] { return window->size() == before; }, QStringLiteral("the window as it was"));
}

//! The watch looks every ten seconds.
void ProjectTour::pushedOut()
{
    OtherHost other;
    QString error;
    m_visitor.require(other.start(User, Password, &error), error);
    m_visitor.await([&other] { return other.isSignedIn() || !other.isRunning(); },
                    QStringLiteral("the other host signed in"));
    m_visitor.require(other.isSignedIn(), QStringLiteral("the other host signed in: ") + other.output());
    m_visitor.awaitText(QStringLiteral("notice"), "text",
                        QStringLiteral("您的帐号在另一地点登录，您被迫下线"));
    m_visitor.awaitLogLine(
        QStringLiteral("IMessageObserver::OnMessageFirst: 您的帐号在另一地点登录，您被迫下线"));
    // Where no window manager runs, the other host's window is in front.
    m_visitor.awaitItem(ServerList)->window()->raise();
    takePicture();
}

void ProjectTour::signedInAgain()
{
    m_visitor.press(QStringLiteral("noticeSignInButton"));
    signInByForm(m_visitor, User, Password);
    m_visitor.await([] { return visibleItem(QStringLiteral("notice")) == nullptr; },
                    QStringLiteral("the notice gone"));
    awaitQuiet();
    awaitProjects(ServerList, m_simulator.projectNames());
    const QStringList all = m_simulator.unitNames();
    const QQuickItem* const tree = m_visitor.awaitItem(QStringLiteral("orgTree"));
    m_visitor.await([&] { return names(tree) == all; }, QStringLiteral("the tree, once"));
    takePicture();
}

void ProjectTour::visit(const QString& station, void (ProjectTour::*what)())
{
    m_visitor.arriveAt(station);
    (this->*what)();
}

void ProjectTour::selectProject(const QString& name) const
{
    m_visitor.click(QStringLiteral("project"), "projectName", name);
    m_visitor.awaitItemWith(QStringLiteral("detailValue"), "text", name);
}

void ProjectTour::createProject(const QString& name) const
{
    m_visitor.fill(QStringLiteral("newName"), "text", name);
    m_visitor.press(QStringLiteral("createButton"));
    m_visitor.awaitText(QStringLiteral("localName"), "text", name);
}

void ProjectTour::awaitProjects(const QString& list, const QStringList& expected) const
{
    const QQuickItem* const view = m_visitor.awaitItem(list);
    m_visitor.await([&] { return sorted(names(view)) == sorted(expected); },
                    QStringLiteral("%1: %2").arg(list, expected.join(QStringLiteral(", "))));
}

//! Waits until nothing is being done.
void ProjectTour::awaitQuiet() const
{
    m_visitor.awaitText(QStringLiteral("activity"), "text", {});
}

void ProjectTour::takePicture() const
{
    awaitQuiet();
    m_visitor.awaitNewestLine();
    m_visitor.takePicture(m_visitor.awaitItem(ServerList)->window());
}

} // namespace NelvoDevkit
