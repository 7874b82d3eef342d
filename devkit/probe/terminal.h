#pragma once

namespace NelvoDevkit {

//! \brief While it lives, the terminal that is the standard input shows nothing of what is typed.
class HiddenInput
{
public:
    HiddenInput();
    ~HiddenInput();
    HiddenInput(const HiddenInput&) = delete;
    HiddenInput& operator=(const HiddenInput&) = delete;

    //! Whether the standard input is a terminal at all.
    bool isTerminal() const { return m_isTerminal; }

private:
    bool m_isTerminal;
};

} // namespace NelvoDevkit
