#pragma once

#include <QAccessible>
#include <QMetaEnum>
#include <QStringList>
#include <QWindow>

namespace TestSupport {

//! A control as the tests write it: its role, a blank and its name.
inline QString described(QAccessible::Role role, const QString& name)
{
    return QString::fromLatin1(QMetaEnum::fromType<QAccessible::Role>().valueToKey(role)) + QLatin1Char(' ') +
           name;
}

//! What assistive technology finds below `parent`, without what is hidden, in the order of the tree.
inline QList<QAccessibleInterface*> shownControls(QAccessibleInterface* parent)
{
    QList<QAccessibleInterface*> found;
    for (int index = 0; index < parent->childCount(); ++index) {
        QAccessibleInterface* const child = parent->child(index);
        if (!child || child->state().invisible)
            continue;
        found.append(child);
        found.append(shownControls(child));
    }
    return found;
}

inline QList<QAccessibleInterface*> shownControls(QWindow& window)
{
    return shownControls(QAccessible::queryAccessibleInterface(&window));
}

//! The controls of a window in words.
inline QStringList describedControls(QWindow& window)
{
    QStringList texts;
    const QList<QAccessibleInterface*> controls = shownControls(window);
    for (QAccessibleInterface* control : controls)
        texts.append(described(control->role(), control->text(QAccessible::Name)));
    return texts;
}

} // namespace TestSupport
