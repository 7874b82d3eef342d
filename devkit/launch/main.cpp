#include "commandline/commandline.h"
#include "launch/launcher.h"

#include <QCoreApplication>

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    return NelvoDevkit::runProgram("nelvo-launch", [] {
        const auto options = NelvoDevkit::LaunchOptions::parse(QCoreApplication::arguments());
        return options ? NelvoDevkit::launch(*options) : 0;
    });
}
