//! \file
//! \brief survivalhost SCENARIO -: a host with an unusual call. With the second argument, the library does
//!   not treat the first as a sign-in.

#include "tests/e2e/survival/scenario.h"
#include "tests/support/crashdialog.h"

int main(int argc, char** argv)
{
    TestSupport::disableCrashDialog();
    Survival::Scenarios scenarios;
    Survival::addEnds(scenarios);
    Survival::addWaits(scenarios);
    Survival::addObservers(scenarios);
    Survival::addWindowEvents(scenarios);
    Survival::addUpdates(scenarios);
    const auto scenario = scenarios.find(argc > 1 ? argv[1] : "");
    Survival::require(scenario != scenarios.end(), "there is no such scenario");
    return scenario->second({argc, argv});
}
