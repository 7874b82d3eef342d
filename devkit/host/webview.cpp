#include "host/webview.h"

namespace NelvoDevkit {

void WebView::openWeb(const QString& url, const QRectF& rect)
{
    m_log.logCall(
        QStringLiteral("webViewMgr.openWeb: %1, %2 × %3").arg(url).arg(rect.width()).arg(rect.height()));
    m_url = url;
    m_rect = rect;
    Q_EMIT asked();
}

} // namespace NelvoDevkit
