#include "host/commandlinetour.h"

#include "host/visitor.h"

#include <QCoreApplication>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTimer>

#include <cstdlib>
#include <iostream>

namespace NelvoDevkit {

namespace {

constexpr int PatienceMs = 30000;
const auto Station = QStringLiteral("command-line");
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
    visitor.arriveAt(Station);
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

void miss(const QString& what)
{
    std::cout << "MISSED: " << what.toStdString() << std::endl;
    QCoreApplication::exit(EXIT_FAILURE);
}

} // namespace

void runCommandLineTour(const QString& pictures)
{
    Visitor visitor(pictures);
    try {
        walk(visitor);
    } catch (const Missed& missed) {
        visitor.pictureMiss();
        miss(missed.what());
        return;
    }
    QTimer::singleShot(PatienceMs, QCoreApplication::instance(),
                       [] { miss(Station + QStringLiteral(": the process ends with the host's window")); });
}

} // namespace NelvoDevkit
