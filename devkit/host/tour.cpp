#include "host/tour.h"

#include "host/bimtour.h"
#include "host/hostoptions.h"
#include "host/projecttour.h"
#include "host/signintour.h"
#include "host/toursimulator.h"
#include "host/updatetour.h"
#include "host/visitor.h"

#include <QQuickItem>
#include <QQuickWindow>

namespace NelvoDevkit {

namespace {

void walk(Visitor& visitor, const QString& servicesFile)
{
    visitor.arriveAt(QStringLiteral("00-simulator"));
    TourSimulator simulator(visitor, servicesFile);
    SignInTour(visitor, simulator).walk();
    ProjectTour(visitor, simulator).walk();
    BimTour(visitor, simulator).walk();
    visitor.arriveAt(QStringLiteral("41-closing"));
    visitor.awaitItem(QStringLiteral("enterprise"))->window()->close();
}

} // namespace

void runTour(const HostOptions& options)
{
    Visitor visitor(options.tourDirectory);
    visitor.walk([&] {
        if (options.stations.isEmpty())
            walk(visitor, options.servicesFile);
        else
            UpdateTour(visitor).walk(options.stations);
    });
}

} // namespace NelvoDevkit
