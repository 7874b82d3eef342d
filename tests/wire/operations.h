#pragma once

#include "tests/wire/answers.h"

#include <QString>

#include <memory>
#include <optional>
#include <vector>

namespace NelvoDevkit {
class Services;
} // namespace NelvoDevkit

namespace E2e {
class PluginHost;
} // namespace E2e

namespace Wire {

//! \brief Something that a host or a person does, and that takes bytes from a service.
class Operation
{
public:
    Operation() = default;
    virtual ~Operation() = default;
    Q_DISABLE_COPY(Operation)

    //! Does it. Most return when there is an answer or none will come.
    virtual void start() = 0;
    //! How it ended, Used or Failed; nothing as long as it goes on.
    virtual std::optional<Outcome> outcome() const = 0;
};

//! \brief An operation and the one request of it that gets the answer.
struct OperationKind {
    const char* name;
    QByteArray method;
    QString path;
    SoundReply sound;
    //! Needs a host that has signed in to these services, which answer everything else soundly.
    std::unique_ptr<Operation> (*make)(NelvoDevkit::Services& services, E2e::PluginHost& host);
    //! How it ends where that differs from Answer::outcome, by the answer's name.
    std::vector<std::pair<const char*, Outcome>> exceptions;
};

const std::vector<OperationKind>& operations();

} // namespace Wire
