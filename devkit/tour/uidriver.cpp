#include "tour/uidriver.h"

#include "userinput/userinput.h"

#include <QAbstractItemModel>
#include <QFile>
#include <QGuiApplication>
#include <QPixmap>
#include <QQuickItem>
#include <QQuickWindow>
#include <QScreen>
#include <QTest>
#include <QTimer>

#include <atomic>
#include <cstdlib>
#include <iostream>

namespace NelvoDevkit {

namespace {

constexpr int PatienceMs = 30000;
constexpr char LogVariable[] = "NELVO_TOUR_LOG";

void miss(const QString& what)
{
    report(QStringLiteral("MISSED: ") + what);
    QCoreApplication::exit(EXIT_FAILURE);
}

} // namespace

void report(const QString& line)
{
    std::cout << line.toStdString() << std::endl;
    if (!qEnvironmentVariableIsSet(LogVariable))
        return;
    QFile log(qEnvironmentVariable(LogVariable));
    if (log.open(QIODevice::Append))
        log.write(line.toUtf8() + '\n');
}

UiDriver::UiDriver(const QString& pictures) : m_pictures(pictures) {}

void UiDriver::walk(const std::function<void()>& stations)
{
    try {
        stations();
    } catch (const Missed& missed) {
        pictureMiss();
        miss(missed.what());
        return;
    }
    QTimer::singleShot(PatienceMs, QCoreApplication::instance(),
                       [last = m_station] { miss(last + QStringLiteral(": the end of the process")); });
}

void UiDriver::arriveAt(const QString& station)
{
    m_station = station;
    report(QStringLiteral("tour: ") + station);
}

void UiDriver::require(bool reached, const QString& what) const
{
    if (!reached)
        throw Missed(m_station.isEmpty() ? what : QStringLiteral("%1: %2").arg(m_station, what));
}

void UiDriver::await(const std::function<bool()>& condition, const QString& what, int patienceMs) const
{
    require(QTest::qWaitFor(condition, patienceMs), what);
}

QQuickItem* UiDriver::awaitItem(const QString& name) const
{
    await([&name] { return UserInput::findItem(name) != nullptr; }, name);
    return UserInput::findItem(name);
}

void UiDriver::awaitText(const QString& item, const char* property, const QString& text) const
{
    QString last;
    const auto asExpected = [&] {
        const QQuickItem* const found = UserInput::findItem(item);
        last = found ? found->property(property).toString() : QStringLiteral("nothing");
        return found && last == text;
    };
    const bool reached = QTest::qWaitFor(asExpected, PatienceMs);
    require(reached, QStringLiteral("%1 shows '%2' and not '%3'").arg(item, last, text));
}

QQuickItem* UiDriver::awaitItemWith(const QString& name, const char* property, const QString& value) const
{
    QQuickItem* match = nullptr;
    const auto isThere = [&] {
        for (QQuickItem* item : UserInput::findItems(name)) {
            if (item->property(property).toString() == value)
                match = item;
        }
        return match != nullptr;
    };
    await(isThere, QStringLiteral("%1 '%2'").arg(name, value));
    return match;
}

QStringList UiDriver::logLines() const
{
    const QQuickItem* const list = awaitItem(QStringLiteral("logList"));
    const auto* const model = list->property("model").value<QAbstractItemModel*>();
    QStringList lines;
    for (int row = 0; row < model->rowCount(); ++row)
        lines.append(model->index(row, 0).data().toString());
    return lines;
}

void UiDriver::awaitLogLine(const QString& text) const
{
    await([&] { return logLines().contains(text); }, QStringLiteral("in the log: ") + text);
}

void UiDriver::awaitNewestLine() const
{
    const QQuickItem* const list = awaitItem(QStringLiteral("logList"));
    awaitDrawn(list->window()); // rows have their height from then on
    await([list] { return list->property("atYEnd").toBool(); }, QStringLiteral("the newest line in sight"));
}

void UiDriver::click(const QString& item) const
{
    awaitDrawn(awaitItem(item)->window());
    UserInput::click(awaitItem(item));
}

void UiDriver::click(const QString& item, const char* property, const QString& value) const
{
    awaitDrawn(awaitItemWith(item, property, value)->window());
    UserInput::click(awaitItemWith(item, property, value));
}

void UiDriver::press(const QString& button) const
{
    const QQuickItem* const item = awaitItem(button);
    await([item] { return item->isEnabled(); }, button + QStringLiteral(" enabled"));
    click(button);
}

void UiDriver::fill(const QString& field, const char* property, const QString& text) const
{
    click(field);
    UserInput::replaceText(awaitItem(field)->window(), text);
    awaitText(field, property, text);
}

void UiDriver::focusByTab(QQuickWindow* window, const QString& field) const
{
    // Without a window manager, no other program gives the keyboard to a new window.
    window->requestActivate();
    await([window] { return window->isActive(); }, QStringLiteral("the active window"));
    const QQuickItem* const item = awaitItem(field);
    const auto reached = [&] {
        const QQuickItem* const focused = window->activeFocusItem();
        return item == focused || (focused && item->isAncestorOf(focused));
    };
    for (int stops = 0; stops < 100 && !reached(); ++stops)
        QTest::keyClick(window, Qt::Key_Tab);
    require(reached(), field + QStringLiteral(" within reach of the Tab key"));
}

void UiDriver::awaitDrawn(QQuickWindow* window) const
{
    std::atomic<int> frames{0};
    const auto counting = QObject::connect(
        window, &QQuickWindow::frameSwapped, window, [&frames] { ++frames; }, Qt::DirectConnection);
    // The first frame may have been started before.
    const bool drawn = QTest::qWaitFor(
        [&] {
            window->update();
            return frames >= 2;
        },
        PatienceMs);
    QObject::disconnect(counting);
    require(drawn, QStringLiteral("a drawn window"));
}

void UiDriver::takePicture(QQuickWindow* window) const
{
    awaitDrawn(window);
    const QPixmap picture = window->screen()->grabWindow(window->winId());
    save(picture.isNull() ? window->grabWindow() : picture.toImage());
}

void UiDriver::pictureMiss() const
{
    int number = 0;
    m_pictures.mkpath(QStringLiteral("."));
    for (QWindow* window : QGuiApplication::topLevelWindows()) {
        auto* const quickWindow = qobject_cast<QQuickWindow*>(window);
        if (quickWindow && quickWindow->isExposed())
            quickWindow->grabWindow().save(
                m_pictures.filePath(QStringLiteral("%1-missed-%2.png").arg(m_station).arg(++number)));
    }
}

void UiDriver::save(const QImage& picture) const
{
    require(m_pictures.mkpath(QStringLiteral(".")), QStringLiteral("the folder for the pictures"));
    const QString file = m_pictures.filePath(m_station + QStringLiteral(".png"));
    require(picture.save(file), QStringLiteral("the picture ") + file);
}

} // namespace NelvoDevkit
