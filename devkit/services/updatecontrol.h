#pragma once

#include "services/httpmessage.h"

namespace NelvoDevkit {

class Services;

//! \brief The part of the control path for releases and packages.
class UpdateControl
{
public:
    explicit UpdateControl(Services& services) : m_services(services) {}

    HttpReply answer(const HttpRequest& request);

private:
    HttpReply listReleases(const HttpRequest& request);
    HttpReply setRelease(const HttpRequest& request);
    HttpReply listPackages(const HttpRequest& request);
    HttpReply addPackage(const HttpRequest& request);
    HttpReply setDelivery(const HttpRequest& request);

    //! The package with that name. Throws a ParameterError if it does not exist.
    QString knownPackage(const QString& name) const;

    Services& m_services;
};

} // namespace NelvoDevkit
