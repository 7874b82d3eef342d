#pragma once

#include <QByteArray>
#include <QString>

namespace TestSupport {

//! \brief A file beside the test's executable. The destructor removes it.
class ApplicationFile
{
public:
    //! Removes an existing file with that name.
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
