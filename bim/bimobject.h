#pragma once

#include <QObject>

namespace NelvoPlugin {

//! \brief The object "bimObject" on the host's web channel. Web pages only test whether it exists.
class BIMObject final : public QObject
{
    Q_OBJECT

public:
    //! Does nothing; called when the object is registered on the channel.
    void init() {}
};

} // namespace NelvoPlugin
