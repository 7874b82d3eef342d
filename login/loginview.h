#pragma once

#include <QQuickView>

#include <memory>

namespace NelvoPlugin {

class WindowActivity;

//! \brief The login window, frameless and as large as its page. GUI thread.
//!
//! If the free part of its screen is smaller than the page, the window shows the page reduced.
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
    //! Reduces a page that is larger than the free part of the screen, and moves a window that is partly off
    //! it.
    void fitToScreen();

    //! Owned as a child; null during construction.
    WindowActivity* m_activity = nullptr;
    bool m_isReleased = false;
};

//! The geometry of a window for a page of that size on a screen of which `available` is free. The window
//! keeps its position and the size of the page where these fit; otherwise it moves, and it shrinks in
//! proportion.
QRect fittedGeometry(QPoint position, QSize page, const QRect& available);

using LoginViewPointer = std::unique_ptr<LoginView, LoginView::Deleter>;

} // namespace NelvoPlugin
