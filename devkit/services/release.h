#pragma once

#include <QString>

namespace NelvoDevkit {

//! \brief A release of a product in the update service.
struct Release {
    QString version;
    QString remarks;
    QString md5;
    qint64 size = 0;
    QString path; //!< URL of the package; a path that begins with / is on the package server
};

} // namespace NelvoDevkit
