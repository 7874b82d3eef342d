#include "tests/e2e/bimscene.h"

#include "tests/e2e/pluginhost.h"
#include "userinput/userinput.h"

#include <NelvoSDK/IPdsMgr.h>

#include <QQmlContext>
#include <QUrl>
#include <QWheelEvent>
#include <QtTest>

#include <algorithm>

namespace E2e {

namespace {

constexpr QPoint BesideTheDialog{780, 580};
constexpr int WaitMilliseconds = 20000;

//! The visible item with that name below `root`.
QQuickItem* below(QQuickItem* root, const QString& name)
{
    const QVector<QQuickItem*> found = UserInput::findItems(root, name);
    return found.isEmpty() ? nullptr : found.constFirst();
}

QString textOf(const QQuickItem* item)
{
    return item ? item->property("text").toString() : QString();
}

QString pictureOf(const QQuickItem* image)
{
    enum Status { Null, Ready };
    const int status = image->property("status").toInt();
    if (status == Null)
        return {};
    return status == Ready ? image->property("source").toUrl().fileName() : QStringLiteral("broken");
}

} // namespace

bool ImportControl::checkBimProjValid(const QString& guid, bool mainProject)
{
    questions.append(QStringLiteral("%1 %2").arg(guid).arg(mainProject));
    return isImportAllowed;
}

BimScene::BimScene(ImportControl& control) : m_place(new QQuickItem)
{
    m_window.setResizeMode(QQuickView::SizeRootObjectToView);
    m_window.resize(800, 600);
    m_window.setContent({}, nullptr, m_place);
    QQmlContext* const context = m_window.rootContext();
    context->setContextProperty(QStringLiteral("bimControl"), &control);
    context->setContextProperty(QStringLiteral("editConext"), &control); // spelled so
    NelvoSDK::IPdsMgr* const manager = plugin()->GetPdsMgr();
    manager->SetPlugin(plugin());
    manager->SetQmlContext(context);
    manager->CreateBimDialog(m_place);
}

bool BimScene::show()
{
    m_window.show();
    if (!QTest::qWaitForWindowExposed(&m_window) || !UserInput::activate(&m_window))
        return false;
    QTest::mouseMove(&m_window, BesideTheDialog);
    return true;
}

QQuickItem* BimScene::dialog() const
{
    return m_place->findChild<QQuickItem*>(QString(), Qt::FindDirectChildrenOnly);
}

bool BimScene::isDialogShown()
{
    return part(QStringLiteral("dialogTitle"));
}

QString BimScene::title()
{
    const QQuickItem* bar = part(QStringLiteral("dialogTitle"));
    return bar ? bar->property("title").toString() : QString();
}

QString BimScene::message()
{
    return textOf(part(QStringLiteral("errorText")));
}

QString BimScene::department()
{
    const QQuickItem* box = part(QStringLiteral("orgCheck"));
    return box ? box->property("deptName").toString() : QString();
}

QString BimScene::searched()
{
    return textOf(part(QStringLiteral("searchBox")));
}

int BimScene::rowCount()
{
    const QQuickItem* view = part(QStringLiteral("searchView"));
    return view ? view->property("count").toInt() : -1;
}

QStringList BimScene::names()
{
    QStringList found;
    const QMap<int, QQuickItem*> rows = shownRows();
    for (QQuickItem* row : rows)
        found.append(textOf(below(row, QStringLiteral("nameText"))));
    return found;
}

QStringList BimScene::scrollThroughRows()
{
    QMap<int, QString> seen;
    const auto look = [this, &seen] {
        const QMap<int, QQuickItem*> rows = shownRows();
        for (auto row = rows.begin(); row != rows.end(); ++row) {
            const QString name = textOf(below(*row, QStringLiteral("nameText")));
            const QString picture = pictureOf(below(*row, QStringLiteral("professionImage")));
            seen[row.key()] = (name + QLatin1Char(' ') + picture).trimmed();
        }
        return part(QStringLiteral("searchView"))->property("atYEnd").toBool();
    };
    const auto lookAndScroll = [&] {
        const bool isAtEnd = look();
        if (!isAtEnd && !part(QStringLiteral("searchView"))->property("flicking").toBool())
            turnWheel(-1);
        return isAtEnd;
    };
    return QTest::qWaitFor(lookAndScroll, WaitMilliseconds) ? seen.values() : QStringList();
}

void BimScene::clickPart(const QString& name)
{
    UserInput::click(part(name));
}

void BimScene::clickInRow(const QString& row, const QString& button)
{
    const QMap<int, QQuickItem*> rows = shownRows();
    const auto wanted = std::find_if(rows.begin(), rows.end(), [&row](QQuickItem* candidate) {
        return textOf(below(candidate, QStringLiteral("nameText"))) == row;
    });
    if (wanted != rows.end())
        UserInput::click(below(*wanted, button));
}

bool BimScene::chooseDepartment(const QString& name)
{
    const auto find = [this, &name]() -> QQuickItem* {
        const QVector<QQuickItem*> rows = UserInput::findItems(&m_window, QStringLiteral("deptRow"));
        const auto wanted = std::find_if(rows.begin(), rows.end(), [&name](QQuickItem* row) {
            return textOf(below(row, QStringLiteral("deptNameText"))) == name;
        });
        return wanted == rows.end() ? nullptr : *wanted;
    };
    clickPart(QStringLiteral("orgCheck"));
    if (!QTest::qWaitFor([&find] { return find(); }, WaitMilliseconds))
        return false;
    UserInput::click(find());
    return QTest::qWaitFor([this] { return !part(QStringLiteral("orgTree")); }, WaitMilliseconds);
}

//! Without the rows that the view keeps outside of its edges or for reuse.
QMap<int, QQuickItem*> BimScene::shownRows()
{
    QMap<int, QQuickItem*> shown;
    QQuickItem* const view = part(QStringLiteral("searchView"));
    if (!view)
        return shown;
    for (int index = 0; index < rowCount(); ++index) {
        QQuickItem* const row = UserInput::rowAt(view, index);
        if (row && view->contains(row->mapToItem(view, {row->width() / 2, row->height() / 2})))
            shown.insert(index, row);
    }
    return shown;
}

QQuickItem* BimScene::part(const QString& name)
{
    return UserInput::findItem(&m_window, name);
}

void BimScene::turnWheel(int steps)
{
    constexpr int step = 120;
    const QQuickItem* view = part(QStringLiteral("searchView"));
    const QPointF place = view->mapToScene({view->width() / 2, view->height() / 2});
    QWheelEvent event(place, m_window.mapToGlobal(place.toPoint()), {}, {0, steps * step}, Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    // Without a time stamp, a view treats all wheel events as one.
    event.setTimestamp(static_cast<ulong>(QDateTime::currentMSecsSinceEpoch()));
    QCoreApplication::sendEvent(&m_window, &event);
}

} // namespace E2e
