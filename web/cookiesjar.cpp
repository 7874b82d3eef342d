#include "web/cookiesjar.h"

CCookiesJar::CCookiesJar(QObject* parent) : QNetworkCookieJar(parent) {}
