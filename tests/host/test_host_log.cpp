#include "host/logfilter.h"
#include "host/logmodel.h"
#include "host/messagecapture.h"

#include <QAbstractItemModelTester>
#include <QClipboard>
#include <QtTest>

#include <atomic>
#include <thread>
#include <vector>

using NelvoDevkit::LogEntry;
using NelvoDevkit::LogFilter;
using NelvoDevkit::LogModel;
using NelvoDevkit::MessageCapture;

class TestHostLog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void entriesShowUpInOrder();
    void rolesOfAnEntry();
    void kindsOfWhatTheHostLogs();
    void oldestEntriesGo();
    void moreThanTheCapacityAtOnce();
    void appendFromManyThreads();
    void appendWhileRowsArrive();
    void filterByKind();
    void textOfRows();
    void copyGoesToTheClipboard();
    void captureKeepsLevels();
    void captureForwards();
    void captureFromAnotherThread();
    void captureEnds();
};

namespace {

QStringList forwarded;

void append(LogModel& log, const QStringList& texts, LogEntry::Kind kind = LogEntry::Kind::Host)
{
    for (const QString& text : texts)
        log.append({kind, text, {}});
}

QStringList texts(const QAbstractItemModel& model)
{
    QStringList found;
    for (int row = 0; row < model.rowCount(); ++row)
        found.append(model.index(row, 0).data(LogModel::TextRole).toString());
    return found;
}

} // namespace

void TestHostLog::entriesShowUpInOrder()
{
    LogModel log;
    const QAbstractItemModelTester tester(&log);
    append(log, {"a", "b"});
    QCOMPARE(log.rowCount(), 0);
    append(log, {"c"});
    QTRY_COMPARE(texts(log), (QStringList{"a", "b", "c"}));
    append(log, {"d"});
    QTRY_COMPARE(texts(log), (QStringList{"a", "b", "c", "d"}));
}

void TestHostLog::kindsOfWhatTheHostLogs()
{
    LogModel log;
    log.logAction(QStringLiteral("opened"));
    log.logCall(QStringLiteral("called"));
    log.logProblem(QStringLiteral("broken"));
    QTRY_COMPARE(log.rowCount(), 3);
    QCOMPARE(texts(log), (QStringList{"opened", "called", "broken"}));
    const auto entryIs = [&log](int row, LogEntry::Kind kind, const QString& origin) {
        return log.entry(row).kind == kind && log.entry(row).origin == origin;
    };
    QVERIFY(entryIs(0, LogEntry::Kind::Host, {}));
    QVERIFY(entryIs(1, LogEntry::Kind::Observer, {}));
    QVERIFY(entryIs(2, LogEntry::Kind::Warning, QStringLiteral("host")));
}

void TestHostLog::rolesOfAnEntry()
{
    LogModel log;
    log.append({LogEntry::Kind::Warning, QStringLiteral("text"), QStringLiteral("web/webclient.cpp:12"),
                QDateTime({2024, 5, 6}, {7, 8, 9, 10})});
    QTRY_COMPARE(log.rowCount(), 1);
    const QModelIndex index = log.index(0);
    QCOMPARE(index.data(LogModel::TextRole).toString(), QStringLiteral("text"));
    QCOMPARE(index.data(LogModel::KindRole).toString(), QStringLiteral("warning"));
    QCOMPARE(index.data(LogModel::TimeRole).toString(), QStringLiteral("07:08:09.010"));
    QCOMPARE(index.data(LogModel::OriginRole).toString(), QStringLiteral("web/webclient.cpp:12"));
    QVERIFY(!log.data({}, LogModel::TextRole).isValid());
    const QHash<int, QByteArray> names = log.roleNames();
    QCOMPARE(names.size(), 4);
    QCOMPARE(names.value(LogModel::OriginRole), QByteArray("origin"));
}

void TestHostLog::oldestEntriesGo()
{
    LogModel log(3);
    const QAbstractItemModelTester tester(&log);
    append(log, {"a", "b"});
    QTRY_COMPARE(log.rowCount(), 2);
    append(log, {"c", "d"});
    QTRY_COMPARE(texts(log), (QStringList{"b", "c", "d"}));
}

void TestHostLog::moreThanTheCapacityAtOnce()
{
    LogModel log(3);
    const QAbstractItemModelTester tester(&log);
    append(log, {"a", "b", "c", "d", "e"});
    QTRY_COMPARE(texts(log), (QStringList{"c", "d", "e"}));
}

void TestHostLog::appendFromManyThreads()
{
    constexpr int threadCount = 4;
    constexpr int entriesEach = 500;
    LogModel log(threadCount * entriesEach);
    std::vector<std::thread> threads;
    threads.reserve(threadCount);
    for (int thread = 0; thread < threadCount; ++thread) {
        threads.emplace_back([&log, thread] {
            for (int i = 0; i < entriesEach; ++i)
                append(log, {QStringLiteral("%1 %2").arg(thread).arg(i)});
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    QTRY_COMPARE(log.rowCount(), threadCount * entriesEach);

    // The entries of each thread are complete and in order.
    QVector<int> next(threadCount, 0);
    for (const QString& text : texts(log)) {
        const QStringList parts = text.split(QLatin1Char(' '));
        int& expected = next[parts.at(0).toInt()];
        QCOMPARE(parts.at(1).toInt(), expected);
        ++expected;
    }
    QCOMPARE(next, QVector<int>(threadCount, entriesEach));
}

void TestHostLog::appendWhileRowsArrive()
{
    LogModel log;
    connect(&log, &LogModel::rowsInserted, &log, [&log] {
        if (log.rowCount() < 3)
            append(log, {"again"});
    });
    append(log, {"first"});
    QTRY_COMPARE(texts(log), (QStringList{"first", "again", "again"}));
}

void TestHostLog::filterByKind()
{
    LogModel log;
    LogFilter filter(log);
    append(log, {"d"}, LogEntry::Kind::Debug);
    append(log, {"i"}, LogEntry::Kind::Info);
    append(log, {"w"}, LogEntry::Kind::Warning);
    append(log, {"c"}, LogEntry::Kind::Critical);
    append(log, {"h"}, LogEntry::Kind::Host);
    append(log, {"o"}, LogEntry::Kind::Observer);
    QTRY_COMPARE(texts(filter), (QStringList{"d", "i", "w", "c", "h", "o"}));

    QSignalSpy changed(&filter, &LogFilter::shownChanged);
    filter.setShown(LogFilter::ObserverCalls);
    QCOMPARE(texts(filter), (QStringList{"o"}));
    filter.setShown(LogFilter::Problems);
    QCOMPARE(texts(filter), (QStringList{"w", "c"}));
    filter.setShown(LogFilter::Problems);
    QCOMPARE(changed.size(), 2);

    append(log, {"x"}, LogEntry::Kind::Debug);
    append(log, {"y"}, LogEntry::Kind::Warning);
    QTRY_COMPARE(texts(filter), (QStringList{"w", "c", "y"}));
    filter.setShown(LogFilter::Everything);
    QCOMPARE(filter.rowCount(), 8);
}

void TestHostLog::textOfRows()
{
    LogModel log;
    LogFilter filter(log);
    const QDateTime time({2024, 5, 6}, {7, 8, 9, 10});
    log.append({LogEntry::Kind::Debug, QStringLiteral("one"), {}, time});
    log.append({LogEntry::Kind::Warning, QStringLiteral("two"), QStringLiteral("a.cpp:1"), time});
    log.append({LogEntry::Kind::Critical, QStringLiteral("three"), {}, time});
    QTRY_COMPARE(filter.rowCount(), 3);

    const QString two = QStringLiteral("2024-05-06T07:08:09.010 warning  two [a.cpp:1]\n");
    const QString three = QStringLiteral("2024-05-06T07:08:09.010 critical three\n");
    QCOMPARE(filter.text(1, 1), two);
    QCOMPARE(filter.text(1, 2), two + three);
    QCOMPARE(filter.text(2, 99), three);
    QCOMPARE(filter.text(-5, -1), QString());
    // Row numbers count the shown rows only.
    filter.setShown(LogFilter::Problems);
    QCOMPARE(filter.text(0, 0), two);
}

void TestHostLog::copyGoesToTheClipboard()
{
    LogModel log;
    const LogFilter filter(log);
    append(log, {"copied"});
    QTRY_COMPARE(filter.rowCount(), 1);
    filter.copy(0, 0);
    QCOMPARE(QGuiApplication::clipboard()->text(), filter.text(0, 0));
    QVERIFY(filter.text(0, 0).endsWith(QStringLiteral(" copied\n")));
}

void TestHostLog::captureKeepsLevels()
{
    LogModel log;
    {
        const MessageCapture capture(log);
        QTest::ignoreMessage(QtDebugMsg, "d");
        QTest::ignoreMessage(QtInfoMsg, "i");
        QTest::ignoreMessage(QtWarningMsg, "w");
        QTest::ignoreMessage(QtCriticalMsg, "c");
        qDebug("d");
        qInfo("i");
        qWarning("w");
        qCritical("c");
    }
    QTRY_COMPARE(texts(log), (QStringList{"d", "i", "w", "c"}));
    QCOMPARE(log.entry(0).kind, LogEntry::Kind::Debug);
    QCOMPARE(log.entry(1).kind, LogEntry::Kind::Info);
    QCOMPARE(log.entry(2).kind, LogEntry::Kind::Warning);
    QCOMPARE(log.entry(3).kind, LogEntry::Kind::Critical);
    QVERIFY2(log.entry(0).origin.contains(QStringLiteral("test_host_log.cpp:")),
             qPrintable(log.entry(0).origin));
}

void TestHostLog::captureForwards()
{
    const QtMessageHandler testHandler = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext&, const QString& message) { forwarded.append(message); });
    LogModel log;
    {
        const MessageCapture capture(log);
        qWarning("on its way");
    }
    qInstallMessageHandler(testHandler);
    QCOMPARE(forwarded, QStringList("on its way"));
    QTRY_COMPARE(log.rowCount(), 1);
}

void TestHostLog::captureFromAnotherThread()
{
    LogModel log;
    {
        const MessageCapture capture(log);
        QTest::ignoreMessage(QtWarningMsg, "from afar");
        std::thread([] { qWarning("from afar"); }).join();
    }
    QTRY_COMPARE(texts(log), QStringList("from afar"));
}

void TestHostLog::captureEnds()
{
    LogModel log;
    {
        const MessageCapture capture(log);
        QTest::ignoreMessage(QtWarningMsg, "heard");
        qWarning("heard");
    }
    QTest::ignoreMessage(QtWarningMsg, "unheard");
    qWarning("unheard");
    append(log, {"last"});
    QTRY_COMPARE(texts(log), (QStringList{"heard", "last"}));
}

QTEST_MAIN(TestHostLog)
#include "test_host_log.moc"
