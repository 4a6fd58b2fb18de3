// One call: with whom, what became of it, when.
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Chatsum

ItemDelegate {
    id: row

    required property int index
    required property string who
    required property string what
    required property string timeText
    required property string status
    required property string duration
    required property bool isTicked
    property bool ticking: false
    property string glyph: "phone"

    signal ticked(bool on, bool extend)

    readonly property bool isMissed: status === "missed"
    readonly property string outcome: ({
        "answered": qsTr("answered"), "missed": qsTr("missed"), "declined": qsTr("declined"),
        "blocked": qsTr("blocked"), "connected": qsTr("connected"), "no answer": qsTr("no answer")
    })[status] || status
    readonly property string details: [what, outcome, duration].filter(part => part !== "").join(" · ")

    leftPadding: Theme.wide
    rightPadding: Theme.wide
    topPadding: Theme.space
    bottomPadding: Theme.space
    hoverEnabled: true
    focusPolicy: Qt.NoFocus  // the list has the keyboard
    Accessible.role: Accessible.ListItem
    Accessible.name: [who, details, timeText].filter(part => part !== "").join(", ")
    Accessible.selectable: ticking
    Accessible.selected: isTicked
    Accessible.onPressAction: ticking ? ticked(!isTicked, false) : clicked()

    contentItem: RowLayout {
        spacing: Theme.wide
        TickCircle {
            visible: row.ticking
            ticked: row.isTicked
        }
        Glyph {
            name: row.glyph
            color: row.isMissed ? Theme.danger : Theme.softText
            Layout.preferredWidth: Theme.fontSize + 6
            Layout.preferredHeight: Theme.fontSize + 6
        }
        ColumnLayout {
            spacing: 2
            Words {
                Layout.fillWidth: true
                text: row.who
                elide: Text.ElideRight
                maximumLineCount: 1
                color: row.isMissed ? Theme.danger : Theme.text
                Accessible.ignored: true
            }
            Words {
                Layout.fillWidth: true
                text: row.details
                elide: Text.ElideRight
                maximumLineCount: 1
                soft: true
                font.pixelSize: Theme.smallSize
                Accessible.ignored: true
            }
        }
        Words {
            text: row.timeText
            soft: true
            font.pixelSize: Theme.smallSize
            Accessible.ignored: true
        }
    }
    background: Item {
        Rectangle {
            anchors.fill: parent
            anchors.leftMargin: Theme.space
            anchors.rightMargin: Theme.space
            radius: Theme.radius
            color: row.hovered ? Theme.hover : "transparent"
            FocusRing { shown: row.ListView.isCurrentItem && row.ListView.view.activeFocus; gap: -2 }
        }
    }
    // A press of the mouse says whether the run from the last tick is meant, which a click does not.
    MouseArea {
        anchors.fill: parent
        onClicked: mouse => {
            row.clicked()
            if (row.ticking) row.ticked(!row.isTicked, (mouse.modifiers & Qt.ShiftModifier) !== 0)
        }
    }
}
