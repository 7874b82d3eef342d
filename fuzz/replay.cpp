#include "fuzz/support.h"

#include <QDir>
#include <QFile>

#include <cstdio>

//! Replaces the main function of libFuzzer: prints the name of each file in the given directory and passes
//! its content to the target.
int main(int argc, char* argv[])
{
    LLVMFuzzerInitialize(&argc, &argv);
    const QDir corpus(QString::fromLocal8Bit(argc == 2 ? argv[1] : ""));
    const QStringList names = corpus.entryList(QDir::Files, QDir::Name);
    if (argc != 2 || names.isEmpty()) {
        std::fputs("No files to replay\n", stderr);
        return 1;
    }
    for (const QString& name : names) {
        QFile file(corpus.filePath(name));
        if (!file.open(QIODevice::ReadOnly)) {
            std::fprintf(stderr, "%s: %s\n", qUtf8Printable(name), qUtf8Printable(file.errorString()));
            return 1;
        }
        std::printf("%s\n", qUtf8Printable(name));
        std::fflush(stdout);
        const QByteArray input = file.readAll();
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.constData()),
                               static_cast<std::size_t>(input.size()));
    }
    return 0;
}
