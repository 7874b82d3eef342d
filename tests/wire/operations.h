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

//! \brief An operation of a host or a user that reads bytes from a service.
class Operation
{
public:
    Operation() = default;
    virtual ~Operation() = default;
    Q_DISABLE_COPY(Operation)

    //! Starts the operation. Most return when it has ended.
    virtual void start() = 0;
    //! The result, Used or Failed; nothing while it runs.
    virtual std::optional<Outcome> outcome() const = 0;
};

//! \brief An operation and the request of it that gets the reply.
struct OperationKind {
    const char* name;
    QByteArray method;
    QString path;
    SoundReply sound;
    //! Needs a host that is signed in to these services, which reply correctly to everything else.
    std::unique_ptr<Operation> (*make)(NelvoDevkit::Services& services, E2e::PluginHost& host);
    //! The results that differ from Answer::outcome, by the name of the reply.
    std::vector<std::pair<const char*, Outcome>> exceptions;
};

const std::vector<OperationKind>& operations();

} // namespace Wire
