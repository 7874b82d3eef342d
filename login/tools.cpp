#include "login/tools.h"

CTools::CTools(QObject* parent) : QObject(parent) {}

QString CTools::toPercentString(QString src)
{
    return QString::fromLatin1(src.toUtf8().toPercentEncoding());
}
