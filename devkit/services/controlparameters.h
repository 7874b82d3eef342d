#pragma once

#include "services/httpmessage.h"

#include <QMap>
#include <QStringList>

namespace NelvoDevkit {

//! \brief What is wrong with the parameters of a request to the control path.
struct ParameterError {
    QString text;
};

//! The parameters of a request by name.
using Parameters = QMap<QString, QString>;

//! The request's parameters. The readers throw a ParameterError: this one if a parameter is none of `names`
//! or stands there twice.
Parameters readParameters(const HttpRequest& request, const QStringList& names);

//! The parameter's text, which must not be empty; `what` tells what it should be.
QString readText(const Parameters& parameters, const QString& name, const QString& what);
//! The number that `text`, the value of that parameter, tells.
qint64 readNumber(const QString& name, const QString& text, qint64 least, qint64 most, const QString& what);
//! A parameter that is 1 for yes; 0, empty or left out for no.
bool readFlag(const Parameters& parameters, const QString& name);

//! The names one after the other, for a sentence.
QString listed(const QStringList& names);

//! Does it and says so, or tells which parameter is wrong.
template <typename Action>
HttpReply whenParametersAreRight(const Action& action, const QByteArray& report)
{
    try {
        action();
        return textReply(200, report);
    } catch (const ParameterError& wrong) {
        return textReply(400, wrong.text.toUtf8() + '\n');
    }
}

} // namespace NelvoDevkit
