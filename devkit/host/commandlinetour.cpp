#include "host/commandlinetour.h"

#include "host/visitor.h"

#include <QQuickItem>
#include <QQuickWindow>

namespace NelvoDevkit {

namespace {

const auto Enterprise = QStringLiteral("江南水利工程局");

QStringList texts(const QString& name)
{
    QStringList found;
    for (const QQuickItem* item : visibleItems(name))
        found += item->property("text").toString();
    return found;
}

void walk(Visitor& visitor)
{
    visitor.arriveAt(QStringLiteral("command-line"));
    visitor.awaitText(QStringLiteral("enterprise"), "text", Enterprise);
    visitor.require(!visibleItem(QStringLiteral("contentLoader")), QStringLiteral("no login window"));
    visitor.await([] { return texts(QStringLiteral("sessionValue")).contains(Enterprise); },
                  QStringLiteral("the enterprise in the session"));
    visitor.awaitText(QStringLiteral("activity"), "text", {});
    visitor.awaitNewestLine();
    QQuickWindow* const window = visitor.awaitItem(QStringLiteral("enterprise"))->window();
    visitor.takePicture(window);
    window->close();
}

} // namespace

void runCommandLineTour(const QString& pictures)
{
    Visitor visitor(pictures);
    visitor.walk([&] { walk(visitor); });
}

} // namespace NelvoDevkit
