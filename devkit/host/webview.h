#pragma once

#include "host/logmodel.h"

#include <QObject>
#include <QRectF>

namespace NelvoDevkit {

//! \brief Where the editor would show web pages. This host has no browser inside: it shows what it was asked.
//!
//! The plug-in's pages know it as `webViewMgr`.
class WebView : public QObject
{
    Q_OBJECT
    //! Address and place of the page that was asked for last.
    Q_PROPERTY(QString url READ url NOTIFY asked)
    Q_PROPERTY(QRectF rect READ rect NOTIFY asked)

public:
    //! Not owned; lives longer than this object.
    explicit WebView(LogModel& log) : m_log(log) {}

    QString url() const { return m_url; }
    QRectF rect() const { return m_rect; }

    Q_INVOKABLE void openWeb(const QString& url, const QRectF& rect);

Q_SIGNALS:
    //! A page has been asked for, perhaps the same one again.
    void asked();

private:
    LogModel& m_log;
    QString m_url;
    QRectF m_rect;
};

} // namespace NelvoDevkit
