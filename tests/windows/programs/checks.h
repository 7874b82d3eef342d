#pragma once

#include <exception>
#include <iostream>
#include <string>
#include <utility>

namespace WindowsTest {

//! \brief Counts and prints the failed checks of a test program. One failed check makes the program fail.
class Checks
{
public:
    explicit Checks(std::string program) : m_program(std::move(program)) {}

    //! Runs the cases of a function. An exception ends them and counts as a failed check.
    void run(void (*cases)(Checks&))
    {
        try {
            cases(*this);
        } catch (const std::exception& exception) {
            that(false, exception.what());
        }
    }
    //! Begins a case. Its name precedes the texts of its failed checks.
    void begin(std::string name)
    {
        m_case = std::move(name);
        ++m_cases;
    }
    void that(bool holds, const std::string& what)
    {
        ++m_checks;
        if (holds)
            return;
        ++m_failures;
        std::cout << "FAIL: " << m_case << ": " << what << '\n';
    }
    //! Prints the summary and returns the exit status of the program.
    int end() const
    {
        std::cout << m_program << ": " << m_cases << " cases, " << m_checks << " checks, " << m_failures
                  << " failed" << std::endl;
        return m_failures == 0 && m_checks > 0 ? 0 : 1;
    }

private:
    std::string m_program;
    std::string m_case;
    int m_cases = 0;
    int m_checks = 0;
    int m_failures = 0;
};

} // namespace WindowsTest
