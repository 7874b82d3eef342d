#pragma once

#include <string>

//! \brief The sign-in from the command line, and the notification of the program that started it.
//!
//! The argument consists of six texts separated by "$$", in the order of the members. The calling program has
//! created an event and a file mapping of at least 8 bytes, and waits for the event. GUI thread.
class CLoginCmdLineMgr
{
public:
    virtual ~CLoginCmdLineMgr() = default;

    //! Fills the members; leaves them empty if the argument does not have six parts. Adds "http://" to a
    //! server address that starts with neither "http://" nor "https://" in lower case.
    void parseCommandLine(std::wstring argument);

    //! Writes the text "1" into the mapping and then sets the event: the sign-in has ended, successfully or
    //! not. Does nothing without names. Skips an object that cannot be opened.
    void notifyCaller() const;

    std::wstring m_userName;
    //! Lower-case hexadecimal MD5 of the password.
    std::wstring m_password;
    std::wstring m_serverUrl;
    std::wstring m_eventName;
    std::wstring m_mappingName;
    //! A non-numeric id reads as 0.
    int m_enterpriseId = 0;
    //! Unused; keeps its place.
    std::wstring m_reservedText;
};
