#include "web/webserver.h"

CWebServer::CWebServer(QObject* parent) : QObject(parent) {}

CWebServer::~CWebServer() = default;
