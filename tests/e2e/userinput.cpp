#include "tests/e2e/userinput.h"

#include <QtTest>

#include <algorithm>

namespace E2e {

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

QVector<QQuickItem*> findItems(const QQuickWindow* window, const QString& name)
{
    return window ? findItems(window->contentItem(), name) : QVector<QQuickItem*>();
}

QVector<QQuickItem*> findItems(QQuickItem* root, const QString& name)
{
    QVector<QQuickItem*> found;
    collect(root, name, found);
    std::sort(found.begin(), found.end(), [](const QQuickItem* left, const QQuickItem* right) {
        return left->mapToScene({}).y() < right->mapToScene({}).y();
    });
    return found;
}

QQuickItem* rowAt(QQuickItem* view, int index)
{
    QQuickItem* row = nullptr;
    QMetaObject::invokeMethod(view, "itemAtIndex", Q_RETURN_ARG(QQuickItem*, row), Q_ARG(int, index));
    return row;
}

QQuickItem* findItem(const QQuickWindow* window, const QString& name)
{
    const QVector<QQuickItem*> found = findItems(window, name);
    return found.isEmpty() ? nullptr : found.constFirst();
}

bool activate(QQuickWindow* window)
{
    window->requestActivate();
    return QTest::qWaitForWindowActive(window);
}

void click(QQuickWindow* window, const QQuickItem* item)
{
    QTest::mouseClick(window, Qt::LeftButton, Qt::NoModifier,
                      item->mapToScene({item->width() / 2, item->height() / 2}).toPoint());
}

void typeText(QQuickWindow* window, const QString& text)
{
    for (const QChar character : text) {
        QTest::sendKeyEvent(QTest::Click, window, Qt::Key_unknown, QString(character), Qt::NoModifier);
    }
}

void fillField(QQuickWindow* window, const QString& name, const QString& text)
{
    click(window, findItem(window, name));
    QTest::keyClick(window, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(window, Qt::Key_Delete);
    typeText(window, text);
}

void submitForm(QQuickWindow* window, const QString& user, const QString& password, const QString& address)
{
    fillField(window, QStringLiteral("userNameBox"), user);
    fillField(window, QStringLiteral("passwordField"), password);
    fillField(window, QStringLiteral("addressBox"), address);
    click(window, findItem(window, QStringLiteral("loginButton")));
}

QString shownError(const QQuickWindow* window)
{
    const QQuickItem* error = findItem(window, QStringLiteral("errorItem"));
    return error ? error->property("text").toString() : QString();
}

} // namespace E2e
