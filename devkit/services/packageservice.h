#pragma once

#include "services/service.h"

namespace NelvoDevkit {

class Packages;

//! \brief The package server: GET of packages, complete or from an offset.
class PackageService final : public Service
{
public:
    explicit PackageService(Packages& packages);

    Delivery answer(const HttpRequest& request) override;
    //! The service has no sessions.
    void forgetSession(const HttpRequest& request) override;
    void forgetSessions() override;

private:
    Delivery send(const HttpRequest& request);

    Packages& m_packages;
};

//! The path of the package with that name.
QString packagePath(const QString& name);

} // namespace NelvoDevkit
