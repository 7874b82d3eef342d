#pragma once

#include <QString>

namespace NelvoDevkit {

class TourSimulator;
class UiDriver;

//! \brief The stations of the tour from the empty login form to the log of two sign-ins.
class SignInTour
{
public:
    //! Owns none of its arguments.
    SignInTour(UiDriver& ui, const TourSimulator& simulator);

    //! Ends with the host's window, signed in as `zhangwei`.
    void walk();

private:
    //! An account of the simulator.
    struct Account {
        QString user;
        QString password;
        //! Name of the enterprise that the tour enters, and its position in the list.
        QString enterprise;
        int enterpriseRow;
    };

    void emptyForm();
    void typing();
    void emptyPassword();
    void addressWithoutScheme();
    void unreachableAddress();
    void wrongPassword();
    void enterpriseChoice();
    void chosenRow();
    void progress();
    void hostWindow();
    void createLocalProject();
    void signedOut();
    void keyboardOnly();
    void log();
    void observerCalls();

    void visit(const QString& station, void (SignInTour::*what)());
    void expectRefusal(const QString& message) const;

    UiDriver& m_ui;
    const TourSimulator& m_simulator;

    const Account m_many{QStringLiteral("lina"), QStringLiteral("lina2024"), QStringLiteral("江南水利工程局"),
                         2};
    const Account m_single{QStringLiteral("zhangwei"), QStringLiteral("123456"),
                           QStringLiteral("远景建筑设计研究院"), 0};
};

} // namespace NelvoDevkit
