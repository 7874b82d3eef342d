#include "tests/qml/loginwindowtest.h"
#include "tests/support/accessibletree.h"
#include "tests/support/updaterstandin.h"

#include <QAccessible>
#include <QJsonArray>
#include <QJsonObject>
#include <QQmlContext>
#include <QQuickItem>
#include <QtTest>

using TestSupport::described;
using TestSupport::describedControls;
using TestSupport::shownControls;

//! \brief The login window as assistive technology reads it.
class TestAccessibility : public LoginWindowTest
{
    Q_OBJECT

private Q_SLOTS:
    void pagesNameTheirControls_data();
    void pagesNameTheirControls();
    void everyStopOfTheTabKeyHasANameAndARole_data();
    void everyStopOfTheTabKeyHasANameAndARole();
    void passwordIsMarkedAsOne();
    void checkBoxShowsItsState();
    void selectedEnterpriseIsMarked();
    void errorIsAnAlertWhileItShows();
    void pressActionDoesWhatAClickDoes();
    void pressActionDoesNothingWhileTheButtonIsDisabled();

private:
    void open(const QString& page);
    QAccessibleInterface* find(QAccessible::Role role, const QString& name) const;
    void press(QAccessible::Role role, const QString& name) const;

    TestSupport::UpdaterStandIn m_updater;
};

namespace {

const auto CloseButton = QStringLiteral("Button 关闭");

QJsonArray enterprises()
{
    QJsonArray list;
    for (const char* name : {"Acme", "Bolt"})
        list.append(QJsonObject{{QStringLiteral("enterpriseId"), 7},
                                {QStringLiteral("enterpriseName"), QString::fromLatin1(name)}});
    return list;
}

} // namespace

void TestAccessibility::open(const QString& page)
{
    loginCtrl->setAppList(enterprises());
    view->rootContext()->setContextProperty(QStringLiteral("updater"), &m_updater);
    load();
    if (QTest::currentTestFailed())
        return;
    const QUrl url(QStringLiteral("qrc:/NelvoPlugin/qmls/BizComp/%1.qml").arg(page));
    QVERIFY(item("contentLoader")->setProperty("source", url));
    if (page == QStringLiteral("ApplistComp"))
        QTRY_COMPARE(item("companyList")->property("count").toInt(), 2);
    // Like the start of a screen reader: Qt activates the accessibility of the existing controls.
    QAccessible::setActive(true);
    Q_EMIT m_updater.readyUpdateInfo(QStringLiteral("ready"));
    const qint64 megabyte = 1 << 20;
    Q_EMIT m_updater.downloadProgress(QStringLiteral("package"), megabyte, 2 * megabyte);
}

QAccessibleInterface* TestAccessibility::find(QAccessible::Role role, const QString& name) const
{
    const QList<QAccessibleInterface*> interfaces = shownControls(*view);
    for (QAccessibleInterface* control : interfaces) {
        if (control->role() == role && control->text(QAccessible::Name) == name)
            return control;
    }
    return nullptr;
}

void TestAccessibility::press(QAccessible::Role role, const QString& name) const
{
    QAccessibleInterface* const control = find(role, name);
    QVERIFY2(control, qPrintable(described(role, name)));
    QVERIFY(control->actionInterface());
    control->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
}

void TestAccessibility::pagesNameTheirControls_data()
{
    QTest::addColumn<QStringList>("controls");
    const auto page = [](const char* name, QStringList controls) {
        controls.prepend(CloseButton);
        QTest::newRow(name) << controls;
    };
    // The empty name is the password field: Qt hides its name here, see passwordIsMarkedAsOne().
    page("LoginComp", {QStringLiteral("ComboBox 用户名"), QStringLiteral("EditableText 用户名"),
                       QStringLiteral("EditableText "), QStringLiteral("ComboBox Nelvo服务器地址"),
                       QStringLiteral("EditableText Nelvo服务器地址"), QStringLiteral("CheckBox 记住密码"),
                       QStringLiteral("Button 登录")});
    page("ApplistComp", {QStringLiteral("StaticText 选择企业:"), QStringLiteral("Button 选择企业:"),
                         QStringLiteral("List 选择企业:"), QStringLiteral("ListItem Acme"),
                         QStringLiteral("ListItem Bolt"), QStringLiteral("Button 确定")});
    page("ValidComp", {QStringLiteral("ProgressBar 正在登录")});
    page("UpdateComp", {QStringLiteral("Heading 检测到新版本！"), QStringLiteral("EditableText 更新内容"),
                        QStringLiteral("Button 跳过"), QStringLiteral("Button 升级")});
    page("DownloadComp", {QStringLiteral("Heading 正在下载"), QStringLiteral("ProgressBar 正在下载"),
                          QStringLiteral("StaticText 1.00/2.00 MB"), QStringLiteral("EditableText 更新日志"),
                          QStringLiteral("Button 安装")});
    page("CoverComp", {QStringLiteral("Heading 安装中"), QStringLiteral("ProgressBar 安装中"),
                       QStringLiteral("EditableText 更新日志")});
}

void TestAccessibility::pagesNameTheirControls()
{
    QFETCH(QStringList, controls);
    open(QString::fromLatin1(QTest::currentDataTag()));
    QCOMPARE(describedControls(*view).join(QLatin1Char('\n')), controls.join(QLatin1Char('\n')));
}

void TestAccessibility::everyStopOfTheTabKeyHasANameAndARole_data()
{
    QTest::addColumn<QString>("page");
    for (const char* page :
         {"LoginComp", "ApplistComp", "ValidComp", "UpdateComp", "DownloadComp", "CoverComp"})
        QTest::newRow(page) << QString::fromLatin1(page);
}

void TestAccessibility::everyStopOfTheTabKeyHasANameAndARole()
{
    QFETCH(QString, page);
    open(page);
    QSet<QQuickItem*> stops;
    for (;;) {
        QTest::keyClick(view.get(), Qt::Key_Tab);
        QQuickItem* const stop = view->activeFocusItem();
        if (stops.contains(stop))
            break;
        stops.insert(stop);
        QAccessibleInterface* const control = QAccessible::queryAccessibleInterface(stop);
        QVERIFY2(control, stop->metaObject()->className());
        const QAccessible::Text label =
            control->state().passwordEdit ? QAccessible::Description : QAccessible::Name;
        QVERIFY2(!control->text(label).isEmpty(), stop->metaObject()->className());
        QVERIFY(control->role() != QAccessible::NoRole);
        QVERIFY(control->state().focusable);
        QVERIFY(control->state().focused);
    }
    QVERIFY(!stops.isEmpty());
}

// Assistive technology becomes active after the page here: Qt then hides the name of the password field, but
// not its description.
void TestAccessibility::passwordIsMarkedAsOne()
{
    open(QStringLiteral("LoginComp"));
    QAccessibleInterface* const password = QAccessible::queryAccessibleInterface(item("passwordField"));
    QVERIFY(password->state().passwordEdit);
    QCOMPARE(password->text(QAccessible::Description), QStringLiteral("密码"));
}

void TestAccessibility::checkBoxShowsItsState()
{
    open(QStringLiteral("LoginComp"));
    QAccessibleInterface* const box = find(QAccessible::CheckBox, QStringLiteral("记住密码"));
    QVERIFY(box);
    QVERIFY(box->state().checkable);
    QVERIFY(!box->state().checked);
    item("keepPassword")->setProperty("checked", true);
    QVERIFY(box->state().checked);
}

void TestAccessibility::selectedEnterpriseIsMarked()
{
    open(QStringLiteral("ApplistComp"));
    QAccessibleInterface* const row = find(QAccessible::ListItem, QStringLiteral("Bolt"));
    QVERIFY(row);
    QVERIFY(row->state().selectable);
    QVERIFY(!row->state().selected);
    press(QAccessible::ListItem, QStringLiteral("Bolt"));
    QVERIFY(row->state().selected);
    QVERIFY(!find(QAccessible::ListItem, QStringLiteral("Acme"))->state().selected);
}

void TestAccessibility::errorIsAnAlertWhileItShows()
{
    open(QStringLiteral("LoginComp"));
    const QString error = QStringLiteral("用户名或密码输入为空！");
    QVERIFY(!find(QAccessible::AlertMessage, error));
    press(QAccessible::Button, QStringLiteral("登录"));
    QVERIFY(find(QAccessible::AlertMessage, error));
    QTRY_VERIFY(!find(QAccessible::AlertMessage, error));
}

void TestAccessibility::pressActionDoesWhatAClickDoes()
{
    open(QStringLiteral("UpdateComp"));
    press(QAccessible::Button, QStringLiteral("跳过"));
    QVERIFY(item("validComp"));
}

void TestAccessibility::pressActionDoesNothingWhileTheButtonIsDisabled()
{
    open(QStringLiteral("ApplistComp"));
    QAccessibleInterface* const button = find(QAccessible::Button, QStringLiteral("确定"));
    QVERIFY(button);
    QVERIFY(!button->state().focusable);
    press(QAccessible::Button, QStringLiteral("确定"));
    QCOMPARE(loginCtrl->calls(), QVariantList());
}

QTEST_MAIN(TestAccessibility)
#include "test_accessibility.moc"
