// One line of the menu of an earlier report.
import QtQuick
import QtQuick.Controls.Basic
import Chatsum

MenuItem {
    id: item

    property string glyph: ""
    property color ink: Theme.text

    implicitHeight: Theme.control
    Accessible.name: text
    Accessible.onPressAction: {
        triggered()
        if (menu) menu.dismiss()
    }
    contentItem: Row {
        spacing: Theme.space
        Glyph {
            name: item.glyph
            color: item.ink
            width: Theme.fontSize + 4
            height: width
            anchors.verticalCenter: parent.verticalCenter
        }
        Words {
            text: item.text
            color: item.ink
            anchors.verticalCenter: parent.verticalCenter
            Accessible.ignored: true
        }
    }
    background: Rectangle {
        radius: Theme.radius - 3
        color: item.highlighted ? Theme.hover : "transparent"
    }
}
