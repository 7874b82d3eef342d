#pragma once

#include <QString>
#include <QStringList>
#include <QVector>
#include <QtGlobal>

namespace TestSupport {

//! \brief Records Qt's log messages while it exists, and keeps them from the terminal.
//!
//! One at a time. Messages may come from any thread.
class MessageLog
{
public:
    struct Entry {
        QtMsgType type;
        QString text;
        QString file;
        QString category;
    };

    MessageLog();
    ~MessageLog();
    Q_DISABLE_COPY(MessageLog)

    QVector<Entry> entries() const;
    //! The texts of one level, in order.
    QStringList texts(QtMsgType type) const;
    QStringList warnings() const { return texts(QtWarningMsg); }
    QStringList debugs() const { return texts(QtDebugMsg); }
    //! The categories of the messages that hold that text, each once.
    QStringList categories(const QString& text) const;
    void clear();

private:
    QtMessageHandler m_previous;
};

} // namespace TestSupport
