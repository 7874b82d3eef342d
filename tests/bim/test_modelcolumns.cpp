#include "bim/modelcolumns.h"

#include <QJsonObject>
#include <QtTest>

using NelvoPlugin::ModelColumns;

namespace {

QVariantMap columnsOf(const QJsonArray& models)
{
    return ModelColumns(models, nullptr).columns();
}

} // namespace

class TestModelColumns : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void noModelsHaveNoColumns();
    void eachKeyIsAColumnInTheOrderOfTheModels();
    void largeNumbersStayExact();
    void changedListIsReadAgain();
};

void TestModelColumns::noModelsHaveNoColumns()
{
    QCOMPARE(columnsOf({}), QVariantMap());
}

void TestModelColumns::eachKeyIsAColumnInTheOrderOfTheModels()
{
    const QVariantMap columns = columnsOf({
        QJsonObject{{QStringLiteral("name"), QStringLiteral("塔楼")}, {QStringLiteral("ppid"), 7}},
        QJsonObject{{QStringLiteral("name"), QString()}, {QStringLiteral("ppid"), 0}},
        QJsonObject{{QStringLiteral("name"), QStringLiteral("塔楼")}, {QStringLiteral("ppid"), -3}},
    });
    QCOMPARE(columns.keys(), (QStringList{QStringLiteral("name"), QStringLiteral("ppid")}));
    QCOMPARE(columns[QStringLiteral("name")].toStringList(),
             (QStringList{QStringLiteral("塔楼"), QString(), QStringLiteral("塔楼")}));
    QCOMPARE(columns[QStringLiteral("ppid")].value<QVector<qreal>>(), (QVector<qreal>{7, 0, -3}));
}

void TestModelColumns::largeNumbersStayExact()
{
    constexpr qint64 size = (qint64{1} << 53) - 1;
    const QVariantMap columns = columnsOf({QJsonObject{{QStringLiteral("size"), size}}});
    QCOMPARE(columns[QStringLiteral("size")].value<QVector<qreal>>(),
             QVector<qreal>{static_cast<qreal>(size)});
}

void TestModelColumns::changedListIsReadAgain()
{
    QJsonArray models;
    const ModelColumns columns(models, nullptr);
    QVERIFY(columns.columns().isEmpty());
    models.append(QJsonObject{{QStringLiteral("name"), QStringLiteral("车库")}});
    QCOMPARE(columns.columns()[QStringLiteral("name")].toStringList(), QStringList{QStringLiteral("车库")});
}

QTEST_GUILESS_MAIN(TestModelColumns)

#include "test_modelcolumns.moc"
