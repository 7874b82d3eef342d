#pragma once

#include "tests/qml/standins.h"
#include "tests/support/messagelog.h"

#include <QObject>
#include <QQuickView>
#include <QString>

#include <memory>

class QQuickItem;

//! \brief Base of a test of the pages in a real login window: a new window for each function, which must log no
//! warning.
class LoginWindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

protected:
    //! Shows the window with the sign-in page.
    void load(const QString& defaultUrl = QStringLiteral("http://default"));
    QQuickItem* item(const char* objectName) const;

    std::unique_ptr<TestSupport::MessageLog> log;
    std::unique_ptr<LoginCtrl> loginCtrl;
    std::unique_ptr<QQuickView> view;
};
