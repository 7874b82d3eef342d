#include "tests/support/updaterstandin.h"

#include <QVariant>

namespace TestSupport {

void UpdaterStandIn::reset()
{
    m_calls.clear();
    setProperty("localVersion", QString());
    setProperty("latestVersion", QString());
    setProperty("changeLog", QString());
}

void UpdaterStandIn::checkVersion(const QString& url, const QString& token, const QString& productId)
{
    m_calls.append(QStringLiteral("checkVersion %1 %2 %3").arg(url, token, productId));
}

void UpdaterStandIn::download()
{
    m_calls.append(QStringLiteral("download"));
}

void UpdaterStandIn::upgrade()
{
    m_calls.append(QStringLiteral("upgrade"));
}

} // namespace TestSupport
