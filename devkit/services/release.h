#pragma once

#include <QString>

namespace NelvoDevkit {

//! \brief A release of a product, as the update service offers it.
struct Release {
    QString version;
    QString remarks;
    QString md5;
    qint64 size = 0;
    QString path; //!< URL of the package; one that begins with / lies on the package server
};

} // namespace NelvoDevkit
