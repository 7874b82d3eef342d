#include "tests/support/systemtexts.h"

#include <QFile>
#include <QLocale>

namespace TestSupport {

QByteArray acceptLanguage()
{
    const QByteArray language = QLocale::system().name().replace('_', '-').toLatin1();
    if (language == "C")
        return "en,*";
    return language + (language.startsWith("en-") ? ",*" : ",en,*");
}

QString openError(const QString& path, QIODevice::OpenMode mode)
{
    QFile file(path);
    if (file.open(mode))
        qFatal("%s can be opened", qUtf8Printable(path));
    return file.errorString();
}

QByteArray withPlainLineEnds(QByteArray output)
{
    return output.replace("\r\n", "\n");
}

} // namespace TestSupport
