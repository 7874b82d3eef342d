import QtQuick 2.15
import QtGraphicalEffects 1.0

// The glow of a GradiantBtn. A file of its own, so that its shaders are loaded when a mouse first comes and
// not with the window.
Glow {
    samples: 7
}
