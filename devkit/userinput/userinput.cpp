#include "userinput/userinput.h"

#include <QGuiApplication>
#include <QtTest>

#include <algorithm>

namespace UserInput {

namespace {

void collect(QQuickItem* item, const QString& name, QVector<QQuickItem*>& found)
{
    if (!item->isVisible())
        return;
    if (item->objectName() == name)
        found.append(item);
    const QList<QQuickItem*> children = item->childItems();
    for (QQuickItem* child : children)
        collect(child, name, found);
}

} // namespace

QVector<QQuickItem*> findItems(QQuickItem* root, const QString& name)
{
    QVector<QQuickItem*> found;
    collect(root, name, found);
    std::stable_sort(found.begin(), found.end(), [](const QQuickItem* left, const QQuickItem* right) {
        return left->mapToScene({}).y() < right->mapToScene({}).y();
    });
    return found;
}

QVector<QQuickItem*> findItems(const QQuickWindow* window, const QString& name)
{
    return window ? findItems(window->contentItem(), name) : QVector<QQuickItem*>();
}

QVector<QQuickItem*> findItems(const QString& name)
{
    QVector<QQuickItem*> found;
    const QWindowList windows = QGuiApplication::topLevelWindows();
    for (QWindow* window : windows) {
        if (window->isVisible())
            found += findItems(qobject_cast<QQuickWindow*>(window), name);
    }
    return found;
}

QQuickItem* findItem(const QQuickWindow* window, const QString& name)
{
    return findItems(window, name).value(0);
}

QQuickItem* findItem(const QString& name)
{
    return findItems(name).value(0);
}

QQuickItem* rowAt(QQuickItem* view, int index)
{
    QQuickItem* row = nullptr;
    QMetaObject::invokeMethod(view, "itemAtIndex", Q_RETURN_ARG(QQuickItem*, row), Q_ARG(int, index));
    return row;
}

bool activate(QQuickWindow* window)
{
    window->requestActivate();
    return QTest::qWaitForWindowActive(window);
}

void click(const QQuickItem* item)
{
    // The bounding rectangle of a text field is that of its text.
    const QPoint place = item->mapToScene({item->width() / 2, item->height() / 2}).toPoint();
    QQuickWindow* const window = item->window();
    QTest::mouseMove(window, place);
    QTest::mouseClick(window, Qt::LeftButton, {}, place);
}

void typeText(QQuickWindow* window, const QString& text)
{
    for (const QChar character : text)
        QTest::sendKeyEvent(QTest::Click, window, Qt::Key_unknown, QString(character), Qt::NoModifier);
}

void replaceText(QQuickWindow* window, const QString& text)
{
    QTest::keyClick(window, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(window, Qt::Key_Delete);
    typeText(window, text);
}

void fillField(QQuickWindow* window, const QString& name, const QString& text)
{
    click(findItem(window, name));
    replaceText(window, text);
}

} // namespace UserInput
