#pragma once

#include "host/logmodel.h"

#include <QObject>
#include <QRectF>

namespace NelvoDevkit {

//! \brief A placeholder for the editor's web view: this host has no browser and shows the requested address.
//!
//! The plug-in's pages know it as `webViewMgr`.
class WebView : public QObject
{
    Q_OBJECT
    //! Address and place of the page that was requested last.
    Q_PROPERTY(QString url READ url NOTIFY asked)
    Q_PROPERTY(QRectF rect READ rect NOTIFY asked)

public:
    //! Does not own `log`, which must outlive this object.
    explicit WebView(LogModel& log) : m_log(log) {}

    QString url() const { return m_url; }
    QRectF rect() const { return m_rect; }

    Q_INVOKABLE void openWeb(const QString& url, const QRectF& rect);

Q_SIGNALS:
    //! A page has been requested, perhaps the same page again.
    void asked();

private:
    LogModel& m_log;
    QString m_url;
    QRectF m_rect;
};

} // namespace NelvoDevkit
