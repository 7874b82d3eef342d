#include "launch/callerhandshake.h"

#include <QString>
#include <QUrl>

#include <cerrno>
#include <ctime>
#include <system_error>

#include <fcntl.h>
#include <semaphore.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace NelvoDevkit {

namespace {

constexpr mode_t OwnerOnly = S_IRUSR | S_IWUSR;

//! Percent-encodes the name: slashes are not allowed, and systems differ in what else is.
std::string objectName(const std::wstring& name)
{
    return '/' + QUrl::toPercentEncoding(QString::fromStdWString(name)).toStdString();
}

[[noreturn]] void fail(const char* what, const std::string& name)
{
    const int error = errno;
    throw std::system_error(error, std::generic_category(), what + name);
}

class Block
{
public:
    explicit Block(const std::wstring& name) : m_name(objectName(name))
    {
        const int descriptor = shm_open(m_name.c_str(), O_RDWR | O_CREAT | O_EXCL, OwnerOnly);
        if (descriptor < 0)
            fail("cannot create the shared memory ", m_name);
        const bool sized = ftruncate(descriptor, CallerHandshake::BlockSize) == 0;
        void* const address = sized ? mmap(nullptr, CallerHandshake::BlockSize, PROT_READ | PROT_WRITE,
                                           MAP_SHARED, descriptor, 0)
                                    : MAP_FAILED;
        const int error = errno;
        close(descriptor);
        if (address == MAP_FAILED) {
            shm_unlink(m_name.c_str());
            errno = error;
            fail("cannot map the shared memory ", m_name);
        }
        m_bytes = static_cast<char*>(address);
    }
    ~Block()
    {
        munmap(m_bytes, CallerHandshake::BlockSize);
        shm_unlink(m_name.c_str());
    }
    Block(const Block&) = delete;
    Block& operator=(const Block&) = delete;

    char* bytes() const { return m_bytes; }

private:
    std::string m_name;
    char* m_bytes = nullptr;
};

class Event
{
public:
    explicit Event(const std::wstring& name)
        : m_name(objectName(name)), m_semaphore(sem_open(m_name.c_str(), O_CREAT | O_EXCL, OwnerOnly, 0))
    {
        if (m_semaphore == SEM_FAILED)
            fail("cannot create the event ", m_name);
    }
    ~Event()
    {
        sem_close(m_semaphore);
        sem_unlink(m_name.c_str());
    }
    Event(const Event&) = delete;
    Event& operator=(const Event&) = delete;

    bool wait(std::chrono::milliseconds patience) const
    {
        using namespace std::chrono;
        const nanoseconds end = steady_clock::now().time_since_epoch() + patience;
        const auto wholeSeconds = duration_cast<seconds>(end);
        const timespec deadline{wholeSeconds.count(), (end - wholeSeconds).count()};
        while (sem_clockwait(m_semaphore, CLOCK_MONOTONIC, &deadline) != 0) {
            if (errno != EINTR)
                return false;
        }
        return true;
    }

private:
    std::string m_name;
    sem_t* m_semaphore;
};

} // namespace

struct CallerHandshake::Objects {
    Block block;
    Event event;
};

CallerHandshake::CallerHandshake(const std::wstring& eventName, const std::wstring& blockName)
    : m_objects(new Objects{Block(blockName), Event(eventName)}), m_block(m_objects->block.bytes())
{}

CallerHandshake::~CallerHandshake() = default;

bool CallerHandshake::wait(std::chrono::milliseconds patience) const
{
    return m_objects->event.wait(patience);
}

} // namespace NelvoDevkit
