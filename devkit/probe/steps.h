#pragma once

#include <QString>
#include <QVector>

namespace NelvoDevkit {

//! The steps of the walk, in their order.
enum class Step {
    PlugIn,
    SignInForm,
    SignIn,
    Enterprises,
    Binding,
    Addresses,
    Token,
    Heartbeat,
    Organisation,
    Projects,
    Models,
    Drawings,
    Updates,
    SignOut,
};

//! \brief The constant data of a step.
struct StepInfo {
    Step step;
    //! Its name for tools, and its name for users.
    const char* key;
    const char* name;
    //! The plug-in's request for the step; both are empty if the step sends none.
    const char* method;
    const char* path;
    //! The plug-in's log texts after a failure and after a success. Null if it logs none.
    const char* failure = nullptr;
    const char* success = nullptr;
};

//! Every step once, in their order.
const QVector<StepInfo>& allSteps();
const StepInfo& infoOf(Step step);

} // namespace NelvoDevkit
