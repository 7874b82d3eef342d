import QtQuick 2.15
import QtGraphicalEffects 1.0

// The glow of a GradiantBtn. A separate file, so that its shaders are loaded when the mouse first enters a
// button and not with the window.
Glow {
    samples: 7
}
