#include <NelvoSDK/LoadPlugin.h>
#include <NelvoSDK/Version.h>

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QtTest>

//! Tests LoadPlugin, which loads the plug-in from a folder.
class TestLoadPlugin : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void libraryGivesItsPlugin();
    void secondTimeGivesTheSamePlugin();
    void missingFolderIsReported();
    void brokenLibraryIsReported();
    void missingExportIsReported();
    void reasonIsOptional();
};

namespace {

const QString Plugin = QStringLiteral(NELVO_PLUGIN_FILE);

QString pluginFolder()
{
    return QFileInfo(Plugin).path();
}

//! The path of the plug-in in `folder`.
QString pluginIn(const QTemporaryDir& folder)
{
    return folder.filePath(QFileInfo(Plugin).fileName());
}

} // namespace

void TestLoadPlugin::libraryGivesItsPlugin()
{
    QString error = QStringLiteral("as before");
    NelvoSDK::INelvoSDKPlugin* const loaded = NelvoSDK::LoadPlugin(pluginFolder(), &error);
    QVERIFY2(loaded, qPrintable(error));
    QCOMPARE(error, QStringLiteral("as before"));
    QVERIFY(loaded->GetVersion() == L"1.0.0");
    QCOMPARE(QString::fromStdWString(loaded->GetVersion()), QStringLiteral(NELVO_SDK_VERSION_STRING));
}

void TestLoadPlugin::secondTimeGivesTheSamePlugin()
{
    NelvoSDK::INelvoSDKPlugin* const loaded = NelvoSDK::LoadPlugin(pluginFolder());
    QVERIFY(loaded);
    QCOMPARE(NelvoSDK::LoadPlugin(pluginFolder() + QLatin1Char('/')), loaded);
}

void TestLoadPlugin::missingFolderIsReported()
{
    const QTemporaryDir folder;
    const QString missing = folder.filePath(QStringLiteral("missing"));
    QString error;
    QVERIFY(!NelvoSDK::LoadPlugin(missing, &error));
    QVERIFY2(QDir::fromNativeSeparators(error).contains(missing), qPrintable(error));
}

void TestLoadPlugin::brokenLibraryIsReported()
{
    const QTemporaryDir folder;
    QFile file(pluginIn(folder));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("this is no library") > 0);
    file.close();
    QString error;
    QVERIFY(!NelvoSDK::LoadPlugin(folder.path(), &error));
    QVERIFY2(error.startsWith(QStringLiteral("Cannot load library ")), qPrintable(error));
}

void TestLoadPlugin::missingExportIsReported()
{
    const QTemporaryDir folder;
    QVERIFY(QFile::copy(QStringLiteral(NELVO_EMPTY_LIBRARY), pluginIn(folder)));
    QString error;
    QVERIFY(!NelvoSDK::LoadPlugin(folder.path(), &error));
    QCOMPARE(error, pluginIn(folder) + QStringLiteral(" does not export GetNelvoSDKPlugin"));
}

void TestLoadPlugin::reasonIsOptional()
{
    const QTemporaryDir folder;
    QVERIFY(!NelvoSDK::LoadPlugin(folder.path()));
}

QTEST_GUILESS_MAIN(TestLoadPlugin)
#include "test_loadplugin.moc"
