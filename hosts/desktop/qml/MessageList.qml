// The messages of a conversation, the newest at the end.
import QtQuick
import Chatsum

TickList {
    id: list
    objectName: "messageList"

    property bool isGroup: false

    cacheBuffer: 400
    model: Messages
    Accessible.name: qsTr("Messages")

    delegate: MessageBubble {
        width: ListView.view.width
        isGroup: list.isGroup
        ticking: list.ticking
        isCurrentHit: isHit && index === Messages.currentHitRow
        onPressed: {
            list.forceActiveFocus(Qt.MouseFocusReason)
            list.currentIndex = index
        }
        onTicked: (on, extend) => list.tick(index, on, extend)
    }
}
