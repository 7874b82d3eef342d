#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <memory>
#include <string>

namespace NelvoDevkit {

//! \brief What a program creates before it starts an application that is to sign in by itself: a block of
//! shared memory and an event, under names that it passes on.
//!
//! Names may hold any characters.
class CallerHandshake
{
public:
    static constexpr std::size_t BlockSize = 8;

    //! Creates both, the block filled with zeros. Throws std::system_error, also if there is one of that
    //! name already.
    CallerHandshake(const std::wstring& eventName, const std::wstring& blockName);
    //! Gives both up. On POSIX systems nobody finds them any more; on Windows their names live on as long as
    //! the application has them open.
    ~CallerHandshake();
    CallerHandshake(const CallerHandshake&) = delete;
    CallerHandshake& operator=(const CallerHandshake&) = delete;

    //! Waits for the event; false if it wasn't set in time. The next call waits for it anew.
    bool wait(std::chrono::milliseconds patience) const;

    //! What stands in the block; look at it after the event.
    std::array<char, BlockSize> block() const;
    //! Puts other bytes in place of the zeros.
    void fillBlock(const std::array<char, BlockSize>& content);
    //! The text in the block, up to its NUL.
    std::string text() const;

private:
    //! What the system has for the two.
    struct Objects;

    std::unique_ptr<Objects> m_objects;
    char* m_block;
};

} // namespace NelvoDevkit
