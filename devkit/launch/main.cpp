#include "launch/launcher.h"

#include <QCoreApplication>

#include <iostream>

using NelvoDevkit::LaunchOptions;
using NelvoDevkit::LaunchStatus;

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    QString error;
    const auto options = LaunchOptions::parse(QCoreApplication::arguments(), &error);
    if (!options) {
        std::cerr << "nelvo-launch: " << error.toStdString() << "\n\n"
                  << LaunchOptions::usage().toStdString() << std::flush;
        return static_cast<int>(LaunchStatus::WrongUsage);
    }
    if (options->help) {
        std::cout << LaunchOptions::usage().toStdString() << std::flush;
        return 0;
    }
    return NelvoDevkit::launch(*options);
}
