#pragma once

#include <QObject>

namespace NelvoPlugin {

//! \brief What the host's web pages find as "bimObject" on its web channel: a name to look for.
class BIMObject final : public QObject
{
    Q_OBJECT

public:
    //! Does nothing; the moment at which the object goes on the channel.
    void init() {}
};

} // namespace NelvoPlugin
