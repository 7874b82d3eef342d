#pragma once

#include <QQuickView>

#include <memory>

namespace NelvoPlugin {

class WindowActivity;

//! \brief The login window, frameless and as large as its page. GUI thread.
class LoginView final : public QQuickView
{
    Q_OBJECT

public:
    LoginView();

    //! Deletes an idle window. Hides a busy window; the event loop deletes it later.
    struct Deleter {
        void operator()(LoginView* view) const;
    };

    //! Deletes the released windows that the event loop has not deleted.
    static void deleteReleased();

protected:
    bool event(QEvent* event) override;

private:
    //! Owned as a child; null during construction.
    WindowActivity* m_activity = nullptr;
    bool m_isReleased = false;
};

using LoginViewPointer = std::unique_ptr<LoginView, LoginView::Deleter>;

} // namespace NelvoPlugin
