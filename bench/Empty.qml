import QtQuick 2.15
import QtGraphicalEffects 1.15
import QtQuick.Controls 2.15
import QtQuick.Templates 2.15
import QtQuick.Window 2.15

Item {
    width: 340
    height: 642
}
