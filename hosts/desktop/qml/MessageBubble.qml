// One row of a conversation: the day where it begins, who wrote when, and the words or the attachment.
import QtQuick
import Chatsum

Item {
    id: row

    required property int index
    required property string text
    required property string name
    required property string origin
    required property string timeText
    required property bool isFromMe
    required property string dateLine
    required property var attachment
    required property bool isSystem
    required property bool isTicked
    required property bool isHit
    property bool isGroup: false
    property bool ticking: false
    property bool isCurrentHit: false

    signal ticked(bool on, bool extend)
    signal pressed()

    readonly property bool hasAttachment: attachment.kind !== ""
    readonly property bool hasPicture: file.item !== null && file.item.isPicture
    readonly property bool isFocused: ListView.isCurrentItem && ListView.view.activeFocus
    readonly property real widest: Math.min(560, Math.max(160, (width - leftEdge - Theme.wide) * 0.72))
    readonly property real leftEdge: ticking ? Theme.control + Theme.wide : Theme.wide
    /// Of the words; a whole book is nothing to say in one go.
    readonly property string spoken: text.length > 1000 ? text.slice(0, 1000) + "…" : text
    readonly property color ink: isFromMe ? Theme.bubbleMineText : Theme.bubbleTheirsText

    implicitHeight: frame.y + frame.height + 6
    Accessible.role: Accessible.ListItem
    Accessible.name: [dateLine, name, origin, timeText, attachment.name, spoken]
                         .filter(part => part !== "").join(", ")
    Accessible.selectable: ticking
    Accessible.selected: isTicked
    Accessible.onPressAction: row.ticking ? row.ticked(!row.isTicked, false) : row.pressed()

    MouseArea {
        anchors.fill: parent
        onClicked: mouse => {
            row.pressed()
            if (row.ticking) row.ticked(!row.isTicked, (mouse.modifiers & Qt.ShiftModifier) !== 0)
        }
    }

    Text {
        id: day
        visible: row.dateLine !== ""
        width: parent.width
        height: visible ? Theme.smallSize + 2 * Theme.wide : 0
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        text: row.dateLine
        textFormat: Text.PlainText
        color: Theme.softText
        font.pixelSize: Theme.smallSize
        font.weight: Font.DemiBold
    }

    TickCircle {
        visible: row.ticking
        ticked: row.isTicked
        x: Theme.wide
        y: frame.y + (frame.height - height) / 2
    }

    Text {
        id: sender
        objectName: "sender"
        visible: row.isGroup && !row.isFromMe && !row.isSystem && row.name !== ""
        x: frame.x + 12
        y: day.height
        height: visible ? Theme.smallSize + 7 : 0
        width: row.widest
        elide: Text.ElideRight
        maximumLineCount: 1
        text: row.name
        textFormat: Text.PlainText
        color: Theme.softText
        font.pixelSize: Theme.smallSize
    }

    Text {
        id: way
        objectName: "origin"
        visible: row.origin !== ""
        x: row.isFromMe && !row.isSystem ? row.width - Theme.wide - width - 12 : sender.x
        y: day.height + sender.height
        height: visible ? Theme.smallSize + 7 : 0
        width: Math.min(implicitWidth, row.widest)
        elide: Text.ElideMiddle
        maximumLineCount: 1
        text: row.origin
        textFormat: Text.PlainText
        color: Theme.softText
        font.pixelSize: Theme.smallSize
    }

    Rectangle {
        id: frame

        readonly property real inset: row.hasPicture ? 5 : row.isSystem ? 4 : 12
        readonly property real fileHeight: file.active ? file.height + (body.visible ? 6 : 0) : 0

        y: way.y + way.height
        // As wide as the longest line of the words, which are laid out in all the room there is.
        width: Math.max(body.visible ? Math.ceil(body.contentWidth) + 2 * (row.hasPicture ? 12 : inset) : 0,
                        file.active ? file.width + 2 * inset : 0)
        height: (body.visible ? body.implicitHeight : 0) + fileHeight + (row.isSystem ? 8 : row.hasPicture ? 10 + (body.visible ? 4 : 0) : 16)
        x: row.isSystem ? (row.leftEdge + row.width - width) / 2
            : row.isFromMe ? row.width - Theme.wide - width : row.leftEdge
        radius: row.isSystem ? Theme.radius : 16
        color: row.isSystem ? (row.isHit ? Theme.hit : "transparent")
            : row.isFromMe ? Theme.bubbleMine : Theme.bubbleTheirs
        border.width: row.isCurrentHit ? 3 : row.isHit && !row.isSystem ? 2 : 0
        border.color: Theme.hit

        Loader {
            id: file
            x: frame.inset
            y: row.hasPicture ? frame.inset : 8
            active: row.hasAttachment
            sourceComponent: AttachmentView {
                kind: row.attachment.kind
                name: row.attachment.name
                url: row.attachment.url
                ink: row.ink
                widest: row.widest - 24
            }
        }
        Text {
            id: body
            visible: row.text !== ""
            x: row.isSystem ? (frame.width - width) / 2 : row.hasPicture ? 12 : frame.inset
            y: file.active ? file.y + file.height + 6 : row.isSystem ? 4 : 8
            width: row.widest - 24
            text: row.isSystem && row.name !== "" ? row.name + ": " + row.text : row.text
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
            horizontalAlignment: row.isSystem ? Text.AlignHCenter : Text.AlignLeft
            lineHeight: 1.12
            color: row.isSystem ? Theme.softText : row.ink
            font.pixelSize: row.isSystem ? Theme.smallSize : Theme.fontSize
        }
    }
    FocusRing {
        parent: frame
        shown: row.isFocused
        radius: frame.radius + gap
    }

    Text {
        visible: !row.isSystem
        x: row.isFromMe ? frame.x - width - Theme.space : frame.x + frame.width + Theme.space
        y: frame.y + frame.height - height - 6
        text: row.timeText
        textFormat: Text.PlainText
        color: Theme.softText
        font.pixelSize: Theme.smallSize - 1
    }
}
