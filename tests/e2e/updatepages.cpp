#include "tests/e2e/updatepages.h"

#include "userinput/userinput.h"

#include <QGuiApplication>
#include <QQmlContext>

namespace E2e {

namespace {

QQuickItem* shownPageItem()
{
    const QQuickItem* loader = UserInput::findItem(loginWindow(), QStringLiteral("contentLoader"));
    return loader ? loader->property("item").value<QQuickItem*>() : nullptr;
}

} // namespace

QQuickView* loginWindow()
{
    const QWindowList windows = QGuiApplication::allWindows();
    for (QWindow* window : windows) {
        auto* view = qobject_cast<QQuickView*>(window);
        if (view && view->rootContext()->contextProperty(QStringLiteral("updater")).value<QObject*>())
            return view;
    }
    return nullptr;
}

QObject* updater()
{
    const QQuickView* view = loginWindow();
    return view ? view->rootContext()->contextProperty(QStringLiteral("updater")).value<QObject*>() : nullptr;
}

void checkVersion(const QString& url, const QString& token, const QString& product)
{
    QMetaObject::invokeMethod(updater(), "checkVersion", Q_ARG(QString, url), Q_ARG(QString, token),
                              Q_ARG(QString, product));
}

bool callUpdater(const char* operation)
{
    return QMetaObject::invokeMethod(updater(), operation);
}

QString shownPage()
{
    const QQuickItem* page = shownPageItem();
    return page ? page->objectName() : QString();
}

QQuickItem* pagePart(const QString& name)
{
    QQuickItem* page = shownPageItem();
    const QVector<QQuickItem*> found = page ? UserInput::findItems(page, name) : QVector<QQuickItem*>();
    return found.isEmpty() ? nullptr : found.constFirst();
}

QString pageText(const QString& name)
{
    const QQuickItem* part = pagePart(name);
    return part ? part->property("text").toString() : QString();
}

} // namespace E2e
