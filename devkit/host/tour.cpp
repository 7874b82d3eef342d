#include "host/tour.h"

#include "host/bimtour.h"
#include "host/projecttour.h"
#include "host/signintour.h"
#include "host/toursimulator.h"
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

void runTour(const QString& pictures, const QString& servicesFile)
{
    Visitor visitor(pictures);
    try {
        walk(visitor, servicesFile);
    } catch (const Missed& missed) {
        std::cout << "MISSED: " << missed.what().toStdString() << std::endl;
        visitor.pictureMiss();
        QCoreApplication::exit(EXIT_FAILURE);
        return;
    }
    // Closing the host's window has to be enough.
    QTimer::singleShot(PatienceMs, QCoreApplication::instance(), [] {
        std::cout << "MISSED: 41-closing: the process ends with the host's window" << std::endl;
        QCoreApplication::exit(EXIT_FAILURE);
    });
}

} // namespace NelvoDevkit
