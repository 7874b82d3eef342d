#pragma once

#include "tests/support/startedservices.h"

#include <QByteArrayList>
#include <QCoreApplication>
#include <QString>

inline const QString BimPath = QStringLiteral("/bim/relation/");
inline const QString DwgPath = QStringLiteral("/bim/relation/dwg");

//! \brief The simulated service with one BIM model and one drawing.
class ModelService : public TestSupport::StartedServices
{
public:
    //! Restores the initial state, and sets the application's property "sdkAddr" to the service's address.
    void reset()
    {
        StartedServices::reset();
        setList(BimPath, R"({"nelvo3dId":"b1","ppName":"bim"})");
        setList(DwgPath, R"({"nelvo3dId":"d1","dwgName":"dwg"})");
        QCoreApplication::instance()->setProperty("sdkAddr", editorUrl());
    }

    //! Replaces the list with these rows, separated by commas.
    void setList(const QString& path, const QByteArray& rows)
    {
        setAnswer(path, "{\"data\":[" + rows + "]}");
    }

    void setAnswer(const QString& path, const QByteArray& body)
    {
        setReply("GET", path, TestSupport::json(body));
    }

    //! Method and target of each request so far.
    QByteArrayList targets() const
    {
        QByteArrayList lines;
        const QVector<NelvoDevkit::LoggedRequest> received = log().requests();
        for (const NelvoDevkit::LoggedRequest& request : received)
            lines.append(request.method + ' ' + request.target);
        return lines;
    }
};
