#include "platform/handshake.h"

#include <QByteArray>

#include <fcntl.h>
#include <semaphore.h>
#include <sys/mman.h>
#include <sys/stat.h>

#include <list>

namespace NelvoPlugin {

struct SharedMemory {
    int descriptor;
};

struct NamedEvent {
    sem_t* semaphore;
};

namespace {

//! Stores an opened object until the process ends.
template <typename Object>
Object* keep(Object object)
{
    static auto& kept = *new std::list<Object>;
    return &kept.emplace_back(object);
}

//! Preserves lone surrogates and a byte order mark, which QString would change: they distinguish names.
std::string toUtf8(const std::wstring& text)
{
    std::string bytes;
    const auto append = [&bytes](char32_t value) { bytes += static_cast<char>(value); };
    const auto appendRest = [&append](char32_t value) { append(0x80 | (value & 0x3F)); };
    for (const char32_t code : std::u32string(text.begin(), text.end())) {
        if (code < 0x80) {
            append(code);
        } else if (code < 0x800) {
            append(0xC0 | (code >> 6));
            appendRest(code);
        } else if (code < 0x10000) {
            append(0xE0 | (code >> 12));
            appendRest(code >> 6);
            appendRest(code);
        } else {
            append(0xF0 | (code >> 18));
            appendRest(code >> 12);
            appendRest(code >> 6);
            appendRest(code);
        }
    }
    return bytes;
}

//! The name of the POSIX object. POSIX allows no slash after the first character.
std::string objectName(const std::wstring& name)
{
    return '/' + QByteArray::fromStdString(toUtf8(name)).toPercentEncoding().toStdString();
}

} // namespace

SharedMemory* openSharedMemory(const std::wstring& name)
{
    const int descriptor = shm_open(objectName(name).c_str(), O_RDWR, 0);
    return descriptor < 0 ? nullptr : keep(SharedMemory{descriptor});
}

char* mapSharedMemory(SharedMemory* memory)
{
    struct stat information = {};
    if (fstat(memory->descriptor, &information) != 0 || information.st_size <= 0)
        return nullptr;
    void* const address = mmap(nullptr, static_cast<std::size_t>(information.st_size), PROT_READ | PROT_WRITE,
                               MAP_SHARED, memory->descriptor, 0);
    return address == MAP_FAILED ? nullptr : static_cast<char*>(address);
}

NamedEvent* openEvent(const std::wstring& name)
{
    sem_t* const semaphore = sem_open(objectName(name).c_str(), 0);
    return semaphore == SEM_FAILED ? nullptr : keep(NamedEvent{semaphore});
}

void setEvent(NamedEvent* event)
{
    sem_post(event->semaphore);
}

} // namespace NelvoPlugin
