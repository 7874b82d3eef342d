#include "bench/measure.h"
#include "bim/pdsmgr.h"
#include "tests/bim/pdsstandins.h"
#include "tests/support/pluginshell.h"
#include "tests/support/startedservices.h"
#include "web/webclient.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLoggingCategory>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSet>

//! Compares the processing of a model list with only parsing the same body, and the choice of a department
//! with one pass over the same list.

namespace {

using NelvoPlugin::CPdsMgr;

constexpr int Rows = 50000;
constexpr int Departments = 5000;
constexpr int Rounds = 15;

const auto BimPath = QStringLiteral("/bim/relation/");

QString departmentId(int number)
{
    return QStringLiteral("1001-%1").arg(number);
}

//! A reply with `rows` models. Half of them belong to the departments below the chosen department.
NelvoDevkit::HttpReply answer(int rows)
{
    QVector<QString> departments;
    for (int number = 0; number < 2 * Departments; ++number)
        departments.append(departmentId(number));
    const QVector<NelvoDevkit::BimModel> models = NelvoDevkit::generatedModels(rows, departments).models;
    return NelvoDevkit::jsonReply(QJsonObject{{QStringLiteral("data"), NelvoDevkit::modelRows(models)}});
}

//! A department with its descendants, ten below each.
NelvoSDK::OrgTreeNode unit(int number)
{
    constexpr int fanOut = 10;
    NelvoSDK::OrgTreeNode made;
    made.id = departmentId(number).toStdWString();
    made.name = L"部门";
    for (int child = number * fanOut + 1; child <= (number + 1) * fanOut && child < Departments; ++child)
        made.children.push_back(unit(child));
    return made;
}

//! A manager that has received a list.
struct Manager {
    Manager()
    {
        projects.tree = unit(0);
        plugin.projectInfoMgr = &projects;
        manager.SetPlugin(&plugin);
        QEventLoop loop;
        QObject::connect(&manager, &CPdsMgr::bimProjListChanged, &loop, &QEventLoop::quit);
        manager.InitBimData();
        loop.exec();
        if (manager.getBimProjList().size() != Rows)
            qFatal("the model list has the wrong size");
    }

    ProjectInfo projects;
    TestSupport::PluginShell plugin;
    CPdsMgr manager;
};

//! The time from the end of the transfer, measured on the GUI thread, to the list's signal.
double listMilliseconds(CPdsMgr& manager)
{
    QElapsedTimer sinceLastByte;
    double elapsed = 0;
    QEventLoop loop;
    QObject::connect(sharedNetworkManager(), &QNetworkAccessManager::finished, &loop,
                     [&sinceLastByte] { sinceLastByte.start(); });
    QObject::connect(&manager, &CPdsMgr::bimProjListChanged, &loop, [&] {
        elapsed = static_cast<double>(sinceLastByte.nsecsElapsed()) / 1e6;
        loop.quit();
    });
    QCoreApplication::sendPostedEvents(); // the remaining work of the previous list
    manager.getBimProj();
    loop.exec();
    return elapsed;
}

void measureList(const char* what, TestSupport::StartedServices& services, CPdsMgr& manager)
{
    const QVector<int> sizes{Rows / 4, Rows / 2, Rows};
    const bool isLogged = QLoggingCategory::defaultCategory()->isDebugEnabled();
    QVector<double> medians;
    QVector<double> parse;
    QVector<double> parseAndLog;
    for (const int size : sizes) {
        const NelvoDevkit::HttpReply models = answer(size);
        services.setReply("GET", BimPath, models);
        QVector<double> own;
        parse.clear();
        parseAndLog.clear();
        for (int round = 0; round < Rounds; ++round) {
            own.append(listMilliseconds(manager));
            parse.append(Bench::milliseconds([&models] {
                if (QJsonDocument::fromJson(models.body).isNull())
                    qFatal("the body is no JSON");
            }));
            if (isLogged) {
                parseAndLog.append(Bench::milliseconds(
                    [&models] { qDebug() << QJsonDocument::fromJson(models.body).object(); }));
            }
        }
        medians.append(Bench::median(own));
    }
    Bench::printRatio(what, medians.constLast(), Bench::median(parse), "ms", 2.5);
    if (isLogged) {
        Bench::printRatio("  compared with a parse and the log line", medians.constLast(),
                          Bench::median(parseAndLog), "ms", 1.15);
    }
    Bench::printScaling("  models", sizes, medians, "ms");
}

QJsonArray onePass(const QJsonArray& all, const QSet<QString>& departments)
{
    QJsonArray found;
    for (const QJsonValue& element : all) {
        if (departments.contains(element.toObject().value(QLatin1String("deptId")).toString()))
            found.append(element);
    }
    return found;
}

void measureSearch(CPdsMgr& manager)
{
    manager.searchBydeptId({});
    const QJsonArray all = manager.getBimProjList();
    QSet<QString> departments;
    for (int number = 0; number < Departments; ++number)
        departments.insert(departmentId(number));
    QVector<double> own;
    QVector<double> pass;
    for (int round = 0; round < Rounds; ++round) {
        own.append(Bench::milliseconds([&manager] { manager.searchBydeptId(departmentId(0)); }));
        QJsonArray found;
        pass.append(Bench::milliseconds([&] { found = onePass(all, departments); }));
        if (found.size() != Rows / 2 || manager.getBimProjList() != found)
            qFatal("the search returned other models than the departments'");
    }
    Bench::printRatio("department with 5,000 below / one pass", Bench::median(own), Bench::median(pass), "ms",
                      2);
}

} // namespace

int main(int argc, char** argv)
{
    const QGuiApplication application(argc, argv);
    TestSupport::StartedServices services;
    // Discards the formatted messages: the formatting is part of the measured work, a terminal is not.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    QCoreApplication::instance()->setProperty("sdkAddr", services.editorUrl());
    services.setReply("GET", BimPath, answer(Rows));
    Manager manager;
    measureList("list of 50,000 models, last byte to signal / parse", services, manager.manager);
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
    measureList("the same without debug output / parse", services, manager.manager);
    measureSearch(manager.manager);
    return 0;
}
