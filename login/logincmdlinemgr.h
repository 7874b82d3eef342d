#pragma once

#include <string>

//! \brief The sign-in that another program asks for with one argument, and the word back to that program.
//!
//! The argument is six texts with "$$" between them, in the order of the members. The caller has created
//! an event and a file mapping of at least 8 bytes, and waits for the event. GUI thread.
class CLoginCmdLineMgr
{
public:
    virtual ~CLoginCmdLineMgr() = default;

    //! Fills the members; an argument of another form than six parts leaves them empty. A server address
    //! without "http://" or "https://" in front, in lower case, gets "http://".
    void parseCommandLine(std::wstring argument);

    //! Writes the text "1" into the mapping and then sets the event. It tells that the sign-in has run,
    //! not that it succeeded. Without names nothing happens; what can't be opened is left out.
    void notifyCaller() const;

    std::wstring m_userName;
    //! Lower-case hexadecimal MD5 of the password.
    std::wstring m_password;
    std::wstring m_serverUrl;
    std::wstring m_eventName;
    std::wstring m_mappingName;
    //! 0 also for a text that is no number.
    int m_enterpriseId = 0;
    //! Unused; it keeps its place.
    std::wstring m_reservedText;
};
