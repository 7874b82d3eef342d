#include "tour/updatetour.h"

#include "tour/loginform.h"
#include "tour/tour.h"
#include "tour/uidriver.h"
#include "userinput/userinput.h"

#include <QQuickItem>
#include <QQuickWindow>

namespace NelvoDevkit {

namespace {

const auto OldVersion = QStringLiteral("当前版本 1.0.0");
const auto NewVersion = QStringLiteral("当前版本 1.0.1");
const auto Farewell = QStringLiteral("稍后将自动重启,请等待");

} // namespace

UpdateTour::UpdateTour(UiDriver& ui) : m_ui(ui) {}

void UpdateTour::walk(const QString& stations)
{
    if (stations == InterruptedUpdate)
        interrupted();
    else if (stations == ResumedUpdate)
        resumed();
    else if (stations == FinishedUpdate)
        finished();
    else if (stations == RestartedUpdate)
        restarted();
    else
        m_ui.require(false, QStringLiteral("unknown stations '%1'").arg(stations));
}

void UpdateTour::interrupted()
{
    m_ui.arriveAt(QStringLiteral("update-1-offered"));
    signIn();
    m_ui.press(QStringLiteral("checkUpdateButton"));
    awaitBanner(QStringLiteral("发现新版本 1.0.1"));
    m_ui.awaitText(QStringLiteral("installedVersion"), "text", OldVersion);
    m_ui.require(!UserInput::findItem(QStringLiteral("contentLoader")),
                 QStringLiteral("no login window beside the offer"));
    pictureHost();

    m_ui.arriveAt(QStringLiteral("update-2-downloading"));
    m_ui.press(QStringLiteral("downloadUpdateButton"));
    awaitBanner(QStringLiteral("正在下载 1.0.1"));
    const QQuickItem* const bar = m_ui.awaitItem(QStringLiteral("updateProgress"));
    m_ui.await([bar] { return bar->property("value").toReal() > 0.25; },
               QStringLiteral("the download past a quarter"));
    pictureHost();
    m_ui.arriveAt(QStringLiteral("update-3-killed"));
}

void UpdateTour::resumed()
{
    // The batch file passes the environment to the host that it starts.
    qputenv(StationsVariable, RestartedUpdate.toUtf8());
    m_ui.arriveAt(QStringLiteral("update-4-offered-again"));
    const QQuickWindow* const window = m_ui.awaitItem(QStringLiteral("contentLoader"))->window();
    m_ui.awaitItem(QStringLiteral("updateComp"));
    const QString notes = m_ui.awaitItem(QStringLiteral("releaseNotes"))->property("text").toString();
    m_ui.require(notes.startsWith(QStringLiteral("1.0.1<br/>")), QStringLiteral("the release's notes"));
    m_ui.takePicture(m_ui.awaitItem(QStringLiteral("updateComp"))->window());

    m_ui.arriveAt(QStringLiteral("update-5-resumed"));
    m_ui.press(QStringLiteral("upgradeButton"));
    m_ui.awaitText(QStringLiteral("downloadComp"), "downloadFinished", QStringLiteral("true"));
    m_ui.takePicture(m_ui.awaitItem(QStringLiteral("downloadComp"))->window());

    m_ui.arriveAt(QStringLiteral("update-6-unpacked"));
    m_ui.press(QStringLiteral("installButton"));
    m_ui.awaitItem(QStringLiteral("coverComp"));
    m_ui.awaitText(QStringLiteral("log"), "text", Farewell + QStringLiteral("<br/>"));
    m_ui.awaitText(QStringLiteral("progress"), "value", QStringLiteral("1"));
    m_ui.takePicture(m_ui.awaitItem(QStringLiteral("coverComp"))->window());
    m_ui.require(window->isVisible(), QStringLiteral("the window to the end"));
}

void UpdateTour::finished()
{
    m_ui.arriveAt(QStringLiteral("update-7-nothing-newer"));
    signIn();
    seeNothingNewer();
}

void UpdateTour::restarted()
{
    m_ui.arriveAt(QStringLiteral("update-7-nothing-newer"));
    signIn();
    m_ui.press(QStringLiteral("checkUpdateButton"));
    seeNothingNewer();
    report(QStringLiteral("tour: update-8-closed"));
}

void UpdateTour::seeNothingNewer()
{
    awaitBanner(QStringLiteral("未发现可用的新版本"));
    m_ui.awaitText(QStringLiteral("installedVersion"), "text", NewVersion);
    pictureHost();
    m_ui.press(QStringLiteral("dismissUpdateButton"));
    m_ui.await([] { return !UserInput::findItem(QStringLiteral("updateTitle")); },
               QStringLiteral("the message gone"));
    m_ui.awaitItem(QStringLiteral("enterprise"))->window()->close();
}

void UpdateTour::signIn()
{
    signInByForm(m_ui, QStringLiteral("zhangwei"), QStringLiteral("123456"));
    m_ui.awaitItem(QStringLiteral("enterprise"));
    m_ui.awaitText(QStringLiteral("activity"), "text", {});
}

void UpdateTour::awaitBanner(const QString& title) const
{
    m_ui.awaitText(QStringLiteral("updateTitle"), "text", title);
}

void UpdateTour::pictureHost()
{
    m_ui.awaitNewestLine();
    m_ui.takePicture(m_ui.awaitItem(QStringLiteral("enterprise"))->window());
}

} // namespace NelvoDevkit
