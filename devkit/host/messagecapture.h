#pragma once

#include <QtGlobal>

namespace NelvoDevkit {

class LogModel;

//! \brief While it lives, Qt's log messages of every thread go to a LogModel as well as to where they
//! went before. One at a time.
class MessageCapture
{
public:
    //! `log` is not owned and lives longer than the capture.
    explicit MessageCapture(LogModel& log);
    ~MessageCapture();
    Q_DISABLE_COPY(MessageCapture)
};

} // namespace NelvoDevkit
