#include "fuzz/support.h"
#include "updater/updater.h"
#include "updater/updatestatefile.h"

#include <QCoreApplication>

//! The file of the installed version, and the state of an interrupted update.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray content = Fuzz::bytesOf(data, size);
    Fuzz::writeFile("updateConfig.json", content);
    const QString stateFile = Fuzz::writeFile("NelvoUpdateState.dat", content);
    Fuzz::Network network;

    CUpdater updater;
    updater.localVersion();
    UpdateStateFile(stateFile).state();
    const UpdateState state = UpdateStateFile(stateFile).state();
    updater.download();
    QCoreApplication::processEvents();
    Fuzz::require(state == UpdateState::Downloaded ||
                  UpdateStateFile(stateFile).state() == UpdateState::Downloading ||
                  UpdateStateFile(stateFile).state() == UpdateState::Idle);
    return 0;
}
