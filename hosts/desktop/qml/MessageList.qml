// The messages of a conversation, the newest at the end.
import QtQuick
import Chatsum

TickList {
    id: list
    objectName: "messageList"

    property bool isGroup: false

    /// From where a search goes upwards: the hit it is at while that is in sight, else the end of what is shown.
    function searchRow() {
        if (Messages.currentHitRow >= 0 && itemAtIndex(Messages.currentHitRow)) return Messages.currentHitRow
        const row = indexAt(width / 2, contentY + height - 1)
        return row >= 0 ? row : count - 1
    }

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
