#include <NelvoSDK/INelvoSDKPlugin.h>

#include <QString>

#include <iostream>

int main()
{
    std::cout << QString::fromStdWString(GetNelvoSDKPlugin()->GetVersion()).toStdString() << std::endl;
}
