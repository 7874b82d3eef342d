#pragma once

#include "services/rawanswer.h"

#include <vector>

namespace Wire {

//! \brief How an operation ends under an answer.
enum class Outcome {
    Used,          //!< it takes the answer for a sound one
    Failed,        //!< it fails as documented, and no byte of the answer has an effect
    UsedOrFailed,  //!< Qt decides by a race
    WaitsForClose, //!< it waits as long as the connection is open, and fails then
    MayNeverEnd,   //!< fails; or Qt never finishes the reply, and only the plug-in's shutdown ends the wait
};

//! \brief What a sound service would have answered.
struct SoundReply {
    QByteArray status; //!< such as "200 OK"
    QByteArray body;
    QByteArray elsewhere = {}; //!< an HTTP address of another origin, which gives this reply
};

//! \brief A way to answer wrongly.
struct Answer {
    const char* name;
    NelvoDevkit::RawAnswer (*bytes)(const SoundReply& sound);
    Outcome outcome;
};

//! Every answer, whatever is asked. The first one is sound.
const std::vector<Answer>& answers();
//! The answer that redirects to SoundReply::elsewhere, one of `answers`.
const Answer& redirectElsewhere();
//! The name of an outcome, for Qt Test. The caller deletes it.
char* toString(Outcome outcome);

} // namespace Wire
