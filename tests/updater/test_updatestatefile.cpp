#include "updater/updatestatefile.h"

#include "tests/support/files.h"
#include "tests/support/messagelog.h"

#include <QFile>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

using TestSupport::MessageLog;

class TestUpdateStateFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void missingFileIsAnEmptyObject();
    void unusableContentIsAnEmptyObject_data();
    void unusableContentIsAnEmptyObject();
    void endOfTheScopeWrites();
    void everyKeyIsKept();
    void longerContentIsTruncated();
    void savedKeepsTheEndFromWriting();
    void writeWritesAtOnce();
    void writeLeavesTheEndAsItWas();
    void unwritableFileIsLeftInSilence();

private:
    QByteArray content() const;
    void write(const QByteArray& content) const;

    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_path;
};

void TestUpdateStateFile::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
    m_path = m_dir->filePath(QStringLiteral("NelvoUpdateState.dat"));
}

QByteArray TestUpdateStateFile::content() const
{
    return TestSupport::contentOf(m_path);
}

void TestUpdateStateFile::write(const QByteArray& content) const
{
    QFile file(m_path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write the state file");
}

void TestUpdateStateFile::missingFileIsAnEmptyObject()
{
    const MessageLog log;
    UpdateStateFile file(m_path);
    QVERIFY(file.json.isEmpty());
    QVERIFY(!file.saved);
    QCOMPARE(file.state(), UpdateState::Idle);
    QVERIFY(!QFile::exists(m_path));
    QVERIFY(log.entries().isEmpty());
}

void TestUpdateStateFile::unusableContentIsAnEmptyObject_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("no JSON") << QByteArray("state");
    QTest::newRow("cut") << QByteArray(R"({"updateState": 2)");
    QTest::newRow("array") << QByteArray("[2]");
}

void TestUpdateStateFile::unusableContentIsAnEmptyObject()
{
    QFETCH(const QByteArray, content);
    write(content);
    const MessageLog log;
    UpdateStateFile file(m_path);
    QVERIFY(file.json.isEmpty());
    QCOMPARE(file.state(), UpdateState::Idle);
    QVERIFY(log.entries().isEmpty());
}

void TestUpdateStateFile::endOfTheScopeWrites()
{
    {
        UpdateStateFile file(m_path);
        file.setState(UpdateState::Downloaded);
        file.json.insert("pVersion", "1.0.1");
        QVERIFY(!QFile::exists(m_path));
    }
    QCOMPARE(content(), QByteArray("{\n    \"pVersion\": \"1.0.1\",\n    \"updateState\": 2\n}\n"));
    const UpdateStateFile again(m_path);
    QCOMPARE(again.state(), UpdateState::Downloaded);
    QCOMPARE(again.json.value("pVersion").toString(), QStringLiteral("1.0.1"));
}

void TestUpdateStateFile::everyKeyIsKept()
{
    write(R"({"updateState": 1, "fullMd5": "ab", "remarks": "备注", "pVersion": "1", "other": [1, null]})");
    const QJsonObject before = QJsonDocument::fromJson(content()).object();
    {
        UpdateStateFile file(m_path);
        QCOMPARE(file.state(), UpdateState::Downloading);
        file.setState(UpdateState::Idle);
    }
    QJsonObject expected = before;
    expected.insert("updateState", 0);
    QCOMPARE(QJsonDocument::fromJson(content()).object(), expected);
}

void TestUpdateStateFile::longerContentIsTruncated()
{
    write("{" + QByteArray(10000, ' ') + "}");
    {
        const UpdateStateFile file(m_path);
    }
    QCOMPARE(content(), QByteArray("{\n}\n"));
}

void TestUpdateStateFile::savedKeepsTheEndFromWriting()
{
    write("as it was");
    {
        UpdateStateFile file(m_path);
        file.setState(UpdateState::Downloaded);
        file.saved = true;
    }
    QCOMPARE(content(), QByteArray("as it was"));
}

void TestUpdateStateFile::writeWritesAtOnce()
{
    UpdateStateFile file(m_path);
    file.setState(UpdateState::Downloading);
    file.write();
    QCOMPARE(content(), QByteArray("{\n    \"updateState\": 1\n}\n"));
    QVERIFY(!file.saved);
}

void TestUpdateStateFile::writeLeavesTheEndAsItWas()
{
    {
        UpdateStateFile file(m_path);
        file.setState(UpdateState::Downloading);
        file.write();
        write("changed meanwhile");
    }
    QCOMPARE(content(), QByteArray("{\n    \"updateState\": 1\n}\n"));
}

void TestUpdateStateFile::unwritableFileIsLeftInSilence()
{
    const MessageLog log;
    {
        UpdateStateFile file(m_dir->filePath(QStringLiteral("missing/state")));
        file.setState(UpdateState::Downloading);
        file.write();
    }
    QVERIFY(log.entries().isEmpty());
    QVERIFY(!QFile::exists(m_dir->filePath(QStringLiteral("missing"))));
}

QTEST_GUILESS_MAIN(TestUpdateStateFile)
#include "test_updatestatefile.moc"
