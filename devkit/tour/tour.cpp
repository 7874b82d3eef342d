#include "tour/tour.h"

#include "tour/bimtour.h"
#include "tour/commandlinetour.h"
#include "tour/projecttour.h"
#include "tour/signintour.h"
#include "tour/toursimulator.h"
#include "tour/uidriver.h"
#include "tour/updatetour.h"

#include <QQuickItem>
#include <QQuickWindow>

namespace NelvoDevkit {

namespace {

void visitAllWindows(UiDriver& ui)
{
    ui.arriveAt(QStringLiteral("00-simulator"));
    TourSimulator simulator(ui, qEnvironmentVariable(ServicesVariable));
    SignInTour(ui, simulator).walk();
    ProjectTour(ui, simulator).walk();
    BimTour(ui, simulator).walk();
    ui.arriveAt(QStringLiteral("41-closing"));
    ui.awaitItem(QStringLiteral("enterprise"))->window()->close();
}

} // namespace

void runTour(const QString& stations)
{
    UiDriver ui(qEnvironmentVariable(PicturesVariable));
    ui.walk([&] {
        if (stations == AllWindows)
            visitAllWindows(ui);
        else if (stations == CommandLine)
            visitCommandLine(ui);
        else
            UpdateTour(ui).walk(stations);
    });
}

} // namespace NelvoDevkit
