#pragma once

#include <QObject>
#include <QString>

//! \brief Text functions for the pages; the QML type PercentTools.
class CTools : public QObject
{
    Q_OBJECT

public:
    explicit CTools(QObject* parent = nullptr);

    //! The UTF-8 of `src`, percent-encoded except letters, digits and "-", ".", "_", "~".
    Q_INVOKABLE QString toPercentString(QString src);
};
