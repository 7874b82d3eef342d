#pragma once

#include "services/service.h"

namespace NelvoDevkit {

class Packages;

//! \brief The package server: GET of packages, whole or from an offset on.
class PackageService final : public Service
{
public:
    explicit PackageService(Packages& packages);

    Delivery answer(const HttpRequest& request) override;
    //! It knows no sessions.
    void forgetSession(const HttpRequest& request) override;
    void forgetSessions() override;

private:
    Delivery send(const HttpRequest& request);

    Packages& m_packages;
};

//! Where the package server has the package of that name.
QString packagePath(const QString& name);

} // namespace NelvoDevkit
