#pragma once

#include "services/rawanswer.h"

#include <vector>

namespace Wire {

//! \brief The result of an operation with a reply.
enum class Outcome {
    Used,          //!< it accepts the reply as correct
    Failed,        //!< it fails as documented, and no byte of the reply has an effect
    UsedOrFailed,  //!< depends on a race in Qt
    WaitsForClose, //!< it waits while the connection is open, then fails
    MayNeverEnd,   //!< fails; or Qt never finishes the reply, and only the plug-in's shutdown ends the wait
};

//! \brief The reply of a correct service.
struct SoundReply {
    QByteArray status; //!< such as "200 OK"
    QByteArray body;
    QByteArray elsewhere = {}; //!< an HTTP address of another origin with this reply
};

//! \brief A wrong reply.
struct Answer {
    const char* name;
    NelvoDevkit::RawAnswer (*bytes)(const SoundReply& sound);
    Outcome outcome;
};

//! All replies, for every request. The first one is correct.
const std::vector<Answer>& answers();
//! The reply that redirects to SoundReply::elsewhere, one of `answers`.
const Answer& redirectElsewhere();
//! The name of an outcome, for Qt Test. The caller deletes it.
char* toString(Outcome outcome);

} // namespace Wire
