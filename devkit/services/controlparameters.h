#pragma once

#include "services/httpmessage.h"

#include <QMap>
#include <QStringList>

namespace NelvoDevkit {

//! \brief The error in the parameters of a request to the control path.
struct ParameterError {
    QString text;
};

//! The parameters of a request by name.
using Parameters = QMap<QString, QString>;

//! The parameters of the request. All readers throw a ParameterError; this one throws if a parameter is not
//! in `names` or occurs twice.
Parameters readParameters(const HttpRequest& request, const QStringList& names);

//! The text of the parameter, which must not be empty; `what` describes the expected value.
QString readText(const Parameters& parameters, const QString& name, const QString& what);
//! The number in `text`, the value of that parameter.
qint64 readNumber(const QString& name, const QString& text, qint64 least, qint64 most, const QString& what);
//! A flag: 1 is true; 0, empty or missing is false.
bool readFlag(const Parameters& parameters, const QString& name);

//! The names as a list for a sentence.
QString listed(const QStringList& names);

//! Runs the action and replies with its success, or with the wrong parameter.
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
