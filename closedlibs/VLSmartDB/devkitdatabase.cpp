#include <VLSmartDB/DevkitDatabase.h>

#include "director.h"
#include "seedfile.h"

namespace VLSmartDB {

namespace {

//! Runs the action. Returns false, with the reason in `error`, if it throws a DatabaseError.
template <typename Action>
bool attempt(const Action& action, const QString& subject, QString* error)
{
    try {
        action();
        return true;
    } catch (const DatabaseError& wrong) {
        if (error != nullptr)
            *error = subject + wrong.text;
        return false;
    }
}

} // namespace

bool loadDatabase(const QString& file, QString* error)
{
    const auto load = [&] {
        Database loaded;
        loaded.add(readSeedFile(file));
        Director::instance().database() = std::move(loaded);
    };
    return attempt(load, QStringLiteral("model file %1: ").arg(file), error);
}

bool addObject(const ObjectRecord& object, QString* error)
{
    return attempt([&] { Director::instance().database().add({object}); }, QString(), error);
}

void clearDatabase()
{
    Director::instance().database() = Database();
}

} // namespace VLSmartDB
