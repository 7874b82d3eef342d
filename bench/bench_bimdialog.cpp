#include "bench/measure.h"
#include "tests/bim/pdsstandins.h"
#include "tests/e2e/bimscene.h"
#include "tests/e2e/pluginhost.h"
#include "tests/support/messagelog.h"
#include "tests/support/startedservices.h"
#include "userinput/userinput.h"

#include <NelvoSDK/IPdsMgr.h>

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QJsonArray>
#include <QMap>
#include <QQmlEngine>
#include <QtTest>

#include <functional>

//! Compares the dialog of the loaded library with 50,000 models and with 100 models, in a host's scene: the
//! opening, the arrival of a list, scrolling, and a letter typed into the search. Each time ends when the
//! frame with the rows has been shown.

namespace {

constexpr int Few = 100;
constexpr int Many = 50000;
constexpr int WaitMilliseconds = 60000;
const auto BimPath = QStringLiteral("/bim/relation/");

struct Times {
    QVector<double> opening;
    QVector<double> arrival;
    QVector<double> arrivalGap;
    QVector<double> letter;
    QVector<double> letterGap;
    QVector<double> row;
    QVector<double> conversion;
};

void require(bool condition, const char* what)
{
    if (!condition)
        qFatal("%s", what);
}

//! True if the view has created its first row.
bool hasRow(QQuickItem* view)
{
    QQuickItem* row = nullptr;
    QMetaObject::invokeMethod(view, "itemAtIndex", Q_RETURN_ARG(QQuickItem*, row), Q_ARG(int, 0));
    return row;
}

class Desk
{
public:
    explicit Desk(NelvoDevkit::Services& services) : m_services(services), m_scene(m_control)
    {
        require(m_scene.show(), "the window is not visible");
        manager().Attach(&m_observer);
        m_observer.whenCalled = [this](const QString& call) {
            if (call == QStringLiteral("synced"))
                m_sinceArrival.start();
        };
    }

    ~Desk() { manager().Detach(&m_observer); }
    Q_DISABLE_COPY(Desk)

    //! Generates `count` models in the service and loads them into the dialog.
    void fill(int count)
    {
        m_services.editorData().generateModels(count);
        open();
        require(QTest::qWaitFor([&] { return m_scene.rowCount() == count; }, WaitMilliseconds),
                "the dialog has a wrong number of rows");
        close();
    }

    void measure(Times& times)
    {
        // The dialog shows the previous list, because the new request gets no reply yet.
        m_services.addFault({NelvoDevkit::Fault::Stall, BimPath, "GET", 0, false});
        QElapsedTimer sinceOpening;
        sinceOpening.start();
        open();
        waitForFrame([this] { return m_scene.isDialogShown() && hasRow(view()); });
        times.opening.append(milliseconds(sinceOpening));

        const int synced = m_observer.calls.count(QStringLiteral("synced"));
        m_services.clearFaults();
        times.arrivalGap.append(waitForFrame(
            [&] { return m_observer.calls.count(QStringLiteral("synced")) > synced && hasRow(view()); }));
        times.arrival.append(milliseconds(m_sinceArrival));
        type(times);
        times.row.append(scroll());
        times.conversion.append(convert());
        close();
    }

private:
    static NelvoSDK::IPdsMgr& manager() { return *E2e::plugin()->GetPdsMgr(); }

    static double milliseconds(const QElapsedTimer& timer)
    {
        return static_cast<double>(timer.nsecsElapsed()) / 1e6;
    }

    QQuickItem* view() { return UserInput::findItem(m_scene.window(), QStringLiteral("searchView")); }

    void open() { manager().OpenBimDialog(); }

    void close()
    {
        m_scene.clickPart(QStringLiteral("closeButton"));
        require(QTest::qWaitFor([this] { return !m_scene.isDialogShown(); }, WaitMilliseconds),
                "the dialog does not close");
    }

    //! The time of converting the list for a page, once.
    double convert()
    {
        const QJsonArray list = dynamic_cast<QObject&>(manager()).property("bimProjList").toJsonArray();
        QJSEngine* const engine = m_scene.window()->engine();
        QElapsedTimer timer;
        timer.start();
        const QJSValue converted = engine->toScriptValue(list);
        require(converted.property(QStringLiteral("length")).toInt() == list.size(),
                "the converted list has the wrong size");
        return milliseconds(timer);
    }

    //! Types a letter that a part of the names contain into the search field.
    void type(Times& times)
    {
        QQuickItem* const box = UserInput::findItem(m_scene.window(), QStringLiteral("searchBox"));
        m_scene.clickPart(QStringLiteral("searchBox"));
        waitForFrame([] { return true; });
        const int all = m_scene.rowCount();
        QElapsedTimer sinceKey;
        sinceKey.start();
        QTest::keyClick(m_scene.window(), Qt::Key_7);
        const double keyGap = milliseconds(sinceKey);
        const double frameGap = waitForFrame([&] { return m_scene.rowCount() < all && hasRow(view()); });
        times.letter.append(milliseconds(sinceKey));
        times.letterGap.append(qMax(keyGap, frameGap));
        box->setProperty("text", QString());
        waitForFrame([&] { return m_scene.rowCount() == all; });
    }

    //! Waits for a frame that begins while `condition` is true and has been shown. Returns the longest time
    //! in which the thread processed no event.
    double waitForFrame(const std::function<bool()>& condition)
    {
        bool isShown = false;
        bool isTrue = false;
        QObject context;
        QObject::connect(
            m_scene.window(), &QQuickWindow::afterSynchronizing, &context, [&] { isTrue = condition(); },
            Qt::DirectConnection);
        QObject::connect(m_scene.window(), &QQuickWindow::frameSwapped, &context,
                         [&] { isShown = isShown || isTrue; });
        QElapsedTimer waited;
        waited.start();
        double gap = 0;
        while (!isShown) {
            m_scene.window()->update();
            QElapsedTimer sinceEvents;
            sinceEvents.start();
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            gap = qMax(gap, milliseconds(sinceEvents));
            require(waited.elapsed() < WaitMilliseconds, "the frame does not appear");
        }
        return gap;
    }

    //! The mean time of scrolling by one row, with one frame for each row.
    double scroll()
    {
        constexpr int steps = 80;
        constexpr int rowHeight = 40;
        QQuickItem* const list = view();
        const double begin = list->property("contentY").toDouble();
        QElapsedTimer timer;
        timer.start();
        for (int step = 1; step <= steps; ++step) {
            list->setProperty("contentY", begin + step * rowHeight);
            waitForFrame([] { return true; });
        }
        const double perRow = milliseconds(timer) / steps;
        list->setProperty("contentY", begin);
        return perRow;
    }

    NelvoDevkit::Services& m_services;
    E2e::ImportControl m_control;
    E2e::BimScene m_scene;
    PdsObserver m_observer;
    QElapsedTimer m_sinceArrival;
};

} // namespace

int main(int argc, char** argv)
{
    // Renders on the GUI thread, so that a frame shows the state of the scene at the frame's beginning.
    qputenv("QSG_RENDER_LOOP", "basic");
    const QGuiApplication application(argc, argv);
    TestSupport::StartedServices services;
    const E2e::PluginHost host(services.signInUrl());
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
        if (type == QtFatalMsg)
            std::fprintf(stderr, "%s\n", qUtf8Printable(text));
    });
    QCoreApplication::instance()->setProperty("sdkAddr", services.editorUrl());
    host.signIn(services.signInUrl(), QStringLiteral("zhangwei"));

    constexpr int rounds = 3;
    constexpr int repetitions = 3;
    const QVector<int> sizes{Many / 4, Many / 2, Many};
    QMap<int, Times> times;
    {
        Desk desk(services);
        for (int round = 0; round < rounds; ++round) {
            for (const int count : QVector<int>{Few} + sizes) {
                desk.fill(count);
                for (int repetition = 0; repetition < repetitions; ++repetition)
                    desk.measure(times[count]);
            }
        }
    }
    const Times& few = times[Few];
    const Times& many = times[Many];
    const auto printScaling = [&](const char* name, QVector<double> Times::*figure) {
        QVector<double> medians;
        for (const int size : sizes)
            medians.append(Bench::median(times[size].*figure));
        Bench::printScaling(name, sizes, medians, "ms");
    };
    const auto print = [](const char* name, const QVector<double>& own, const QVector<double>& other,
                          double bound) {
        Bench::printRatio(name, Bench::median(own), Bench::median(other), "ms", bound);
    };
    print("dialog opened, 50,000 models / 100", many.opening, few.opening, 3);
    printScaling("  models", &Times::opening);
    print("one row scrolled, 50,000 models / 100", many.row, few.row, 3);
    printScaling("  models", &Times::row);
    print("50,000 models arrive / 100", many.arrival, few.arrival, 0);
    print("50,000 models arrive / converted once", many.arrival, many.conversion, 1.5);
    printScaling("  models", &Times::arrival);
    Bench::printFigure("  longest gap of the GUI thread", Bench::median(many.arrivalGap), "ms", 0);
    print("one letter typed, 50,000 models / 100", many.letter, few.letter, 0);
    printScaling("  models", &Times::letter);
    Bench::printFigure("  longest gap of the GUI thread", Bench::median(many.letterGap), "ms", 50);
    return 0;
}
