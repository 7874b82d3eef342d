#pragma once

#include <QtGlobal>

namespace NelvoDevkit {

class LogModel;

//! \brief While it exists, a LogModel receives Qt's log messages of all threads, in addition to the previous
//!   message handler. One at a time.
class MessageCapture
{
public:
    //! Does not own `log`, which must outlive the capture.
    explicit MessageCapture(LogModel& log);
    ~MessageCapture();
    Q_DISABLE_COPY(MessageCapture)
};

} // namespace NelvoDevkit
