#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <memory>
#include <string>

namespace NelvoDevkit {

//! \brief The objects that a program creates before it starts an application with a sign-in from the command
//!   line: a block of shared memory and an event. The names of both are passed to the application.
//!
//! Names may contain any characters.
class CallerHandshake
{
public:
    static constexpr std::size_t BlockSize = 8;

    //! Creates both objects; the block contains zeros. Throws std::system_error, also if an object with one
    //! of the names exists.
    CallerHandshake(const std::wstring& eventName, const std::wstring& blockName);
    //! Removes both objects. On POSIX systems other processes cannot open them any more; on Windows the names
    //! exist as long as the application has the objects open.
    ~CallerHandshake();
    CallerHandshake(const CallerHandshake&) = delete;
    CallerHandshake& operator=(const CallerHandshake&) = delete;

    //! Waits for the event. Returns false if it was not set in time. Each call waits again.
    bool wait(std::chrono::milliseconds patience) const;

    //! The content of the block; read it after the event.
    std::array<char, BlockSize> block() const;
    //! Replaces the content of the block.
    void fillBlock(const std::array<char, BlockSize>& content);
    //! The text of the block, up to its NUL.
    std::string text() const;

private:
    //! The objects of the system.
    struct Objects;

    std::unique_ptr<Objects> m_objects;
    char* m_block;
};

} // namespace NelvoDevkit
