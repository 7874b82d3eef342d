#include "tour/commandlinetour.h"

#include "tour/uidriver.h"
#include "userinput/userinput.h"

#include <QQuickItem>
#include <QQuickWindow>

namespace NelvoDevkit {

namespace {

const auto Enterprise = QStringLiteral("江南水利工程局");

QStringList texts(const QString& name)
{
    QStringList found;
    for (const QQuickItem* item : UserInput::findItems(name))
        found += item->property("text").toString();
    return found;
}

} // namespace

void visitCommandLine(UiDriver& ui)
{
    ui.arriveAt(QStringLiteral("command-line"));
    ui.awaitText(QStringLiteral("enterprise"), "text", Enterprise);
    ui.require(!UserInput::findItem(QStringLiteral("contentLoader")), QStringLiteral("no login window"));
    ui.await([] { return texts(QStringLiteral("sessionValue")).contains(Enterprise); },
             QStringLiteral("the enterprise in the session"));
    ui.awaitText(QStringLiteral("activity"), "text", {});
    ui.awaitNewestLine();
    QQuickWindow* const window = ui.awaitItem(QStringLiteral("enterprise"))->window();
    ui.takePicture(window);
    window->close();
}

} // namespace NelvoDevkit
