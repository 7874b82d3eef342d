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

//! \brief What is known of a step beforehand.
struct StepInfo {
    Step step;
    //! Its name for tools, and the one for people.
    const char* key;
    const char* name;
    //! The request that the plug-in makes for it; both are empty for what takes none.
    const char* method;
    const char* path;
    //! What the plug-in logs where the step has failed, and where it has not. Null where it logs no such
    //! text.
    const char* failure = nullptr;
    const char* success = nullptr;
};

//! Every step once, in their order.
const QVector<StepInfo>& allSteps();
const StepInfo& infoOf(Step step);

} // namespace NelvoDevkit
