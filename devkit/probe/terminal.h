#pragma once

namespace NelvoDevkit {

//! \brief While it exists, the terminal of the standard input does not show what the user types.
class HiddenInput
{
public:
    HiddenInput();
    ~HiddenInput();
    HiddenInput(const HiddenInput&) = delete;
    HiddenInput& operator=(const HiddenInput&) = delete;

    //! Whether the standard input is a terminal.
    bool isTerminal() const { return m_isTerminal; }

private:
    bool m_isTerminal;
};

} // namespace NelvoDevkit
