#include "host/updatetour.h"

#include "host/hostoptions.h"
#include "host/loginform.h"
#include "host/visitor.h"

#include <QQuickItem>
#include <QQuickWindow>

namespace NelvoDevkit {

namespace {

const auto OldVersion = QStringLiteral("当前版本 1.0.0");
const auto NewVersion = QStringLiteral("当前版本 1.0.1");
const auto Farewell = QStringLiteral("稍后将自动重启,请等待");

} // namespace

UpdateTour::UpdateTour(Visitor& visitor) : m_visitor(visitor) {}

void UpdateTour::walk(const QString& stations)
{
    if (stations == InterruptedUpdate)
        interrupted();
    else if (stations == ResumedUpdate)
        resumed();
    else if (stations == FinishedUpdate)
        finished();
}

void UpdateTour::interrupted()
{
    m_visitor.arriveAt(QStringLiteral("update-1-offered"));
    signIn();
    m_visitor.press(QStringLiteral("checkUpdateButton"));
    awaitBanner(QStringLiteral("发现新版本 1.0.1"));
    m_visitor.awaitText(QStringLiteral("installedVersion"), "text", OldVersion);
    m_visitor.require(!visibleItem(QStringLiteral("contentLoader")),
                      QStringLiteral("no login window beside the offer"));
    pictureHost();

    m_visitor.arriveAt(QStringLiteral("update-2-downloading"));
    m_visitor.press(QStringLiteral("downloadUpdateButton"));
    awaitBanner(QStringLiteral("正在下载 1.0.1"));
    const QQuickItem* const bar = m_visitor.awaitItem(QStringLiteral("updateProgress"));
    m_visitor.await([bar] { return bar->property("value").toReal() > 0.25; },
                    QStringLiteral("the download past a quarter"));
    pictureHost();
    m_visitor.arriveAt(QStringLiteral("update-3-killed"));
}

void UpdateTour::resumed()
{
    m_visitor.arriveAt(QStringLiteral("update-4-offered-again"));
    const QQuickWindow* const window = m_visitor.awaitItem(QStringLiteral("contentLoader"))->window();
    m_visitor.awaitItem(QStringLiteral("updateComp"));
    const QString notes = m_visitor.awaitItem(QStringLiteral("releaseNotes"))->property("text").toString();
    m_visitor.require(notes.startsWith(QStringLiteral("1.0.1<br/>")), QStringLiteral("the release's notes"));
    m_visitor.takePicture(m_visitor.awaitItem(QStringLiteral("updateComp"))->window());

    m_visitor.arriveAt(QStringLiteral("update-5-resumed"));
    m_visitor.press(QStringLiteral("upgradeButton"));
    m_visitor.awaitText(QStringLiteral("downloadComp"), "downloadFinished", QStringLiteral("true"));
    m_visitor.takePicture(m_visitor.awaitItem(QStringLiteral("downloadComp"))->window());

    m_visitor.arriveAt(QStringLiteral("update-6-unpacked"));
    m_visitor.press(QStringLiteral("installButton"));
    m_visitor.awaitItem(QStringLiteral("coverComp"));
    m_visitor.awaitText(QStringLiteral("log"), "text", Farewell + QStringLiteral("<br/>"));
    m_visitor.awaitText(QStringLiteral("progress"), "value", QStringLiteral("1"));
    m_visitor.takePicture(m_visitor.awaitItem(QStringLiteral("coverComp"))->window());
    m_visitor.require(window->isVisible(), QStringLiteral("the window to the end"));
}

void UpdateTour::finished()
{
    m_visitor.arriveAt(QStringLiteral("update-7-nothing-newer"));
    signIn();
    awaitBanner(QStringLiteral("未发现可用的新版本"));
    m_visitor.awaitText(QStringLiteral("installedVersion"), "text", NewVersion);
    pictureHost();
    m_visitor.press(QStringLiteral("dismissUpdateButton"));
    m_visitor.await([] { return !visibleItem(QStringLiteral("updateTitle")); },
                    QStringLiteral("the message gone"));
    m_visitor.awaitItem(QStringLiteral("enterprise"))->window()->close();
}

void UpdateTour::signIn()
{
    signInByForm(m_visitor, QStringLiteral("zhangwei"), QStringLiteral("123456"));
    m_visitor.awaitItem(QStringLiteral("enterprise"));
    m_visitor.awaitText(QStringLiteral("activity"), "text", {});
}

void UpdateTour::awaitBanner(const QString& title) const
{
    m_visitor.awaitText(QStringLiteral("updateTitle"), "text", title);
}

void UpdateTour::pictureHost()
{
    m_visitor.awaitNewestLine();
    m_visitor.takePicture(m_visitor.awaitItem(QStringLiteral("enterprise"))->window());
}

} // namespace NelvoDevkit
