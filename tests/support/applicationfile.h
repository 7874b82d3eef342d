#pragma once

#include <QByteArray>
#include <QString>

namespace TestSupport {

//! \brief A file beside the test's executable, removed again when this object goes.
class ApplicationFile
{
public:
    //! Removes a file of that name if there is one.
    explicit ApplicationFile(const QString& name);
    ~ApplicationFile();
    Q_DISABLE_COPY(ApplicationFile)

    QString path() const { return m_path; }
    bool exists() const;
    QByteArray content() const;
    void write(const QByteArray& content) const;
    void remove() const;

private:
    QString m_path;
};

} // namespace TestSupport
