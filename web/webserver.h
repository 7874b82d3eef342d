#pragma once

#include <QNetworkAccessManager>
#include <QObject>
#include <QString>

//! \brief The client of the update service: a network manager of its own, without the shared cookies.
class CWebServer final : public QObject
{
    Q_OBJECT

public:
    explicit CWebServer(QObject* parent = nullptr);
    ~CWebServer() override;

    QNetworkAccessManager manager;
    //! Base address of the update service; empty until a version check sets it.
    QString serverAddress;
};
