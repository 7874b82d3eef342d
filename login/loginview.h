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

    //! Deletes a window that is idle. Hides one that is busy and leaves its deletion to the event loop.
    struct Deleter {
        void operator()(LoginView* view) const;
    };

    //! Deletes the released windows that no event loop has deleted.
    static void deleteReleased();

protected:
    bool event(QEvent* event) override;

private:
    //! A child; null while the window is being made.
    WindowActivity* m_activity = nullptr;
    bool m_isReleased = false;
};

using LoginViewPointer = std::unique_ptr<LoginView, LoginView::Deleter>;

} // namespace NelvoPlugin
