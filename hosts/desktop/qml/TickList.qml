// A long list whose rows can be ticked, with the mouse or the keyboard, one by one or from one to another. Only rows that
// can be seen exist as items.
import QtQuick
import QtQuick.Controls.Basic
import Chatsum

ListView {
    id: list

    readonly property bool ticking: Selection.mode === Selection.Ticked
    /// Where a run of ticks begins; -1 for nowhere.
    property int anchorRow: -1
    /// Whether the end stays in view when there is more or less room; until somebody moves away from it.
    property bool keepsEnd: false

    /// Ticks one row, or with `extend` all from the last one that was ticked. What an open report is made of stays.
    function tick(row, on, extend) {
        if (Report.isOpen) return
        if (extend && anchorRow >= 0) Selection.tickRange(anchorRow, row)
        else Selection.tick(row, on)
        anchorRow = row
    }
    function show(row) {
        if (row < 0 || row >= count) return
        keepsEnd = false
        currentIndex = row
        positionViewAtIndex(row, ListView.Center)
    }
    function showBeginning() {
        keepsEnd = false
        currentIndex = count > 0 ? 0 : -1
        positionViewAtBeginning()
    }
    function showEnd() {
        currentIndex = count - 1
        keepsEnd = true
        positionViewAtEnd()
    }
    function stayAtEnd() { if (keepsEnd) positionViewAtEnd() }
    function step(by, extend) {
        const target = Math.max(0, Math.min(count - 1, currentIndex + by))
        if (extend && ticking) {
            if (anchorRow < 0) anchorRow = Math.max(0, currentIndex)
            if (!Report.isOpen) Selection.tickRange(anchorRow, target)
        }
        keepsEnd = false
        currentIndex = target
    }

    clip: true
    activeFocusOnTab: true
    boundsBehavior: Flickable.StopAtBounds
    reuseItems: true
    keyNavigationEnabled: false
    highlightMoveDuration: 0
    header: Item { height: Theme.space }
    footer: Item { height: Theme.wide }
    onMovementStarted: keepsEnd = false
    onHeightChanged: Qt.callLater(stayAtEnd)
    onContentHeightChanged: Qt.callLater(stayAtEnd)
    ScrollBar.vertical: ThinScrollBar { onPressedChanged: if (pressed) list.keepsEnd = false }
    Accessible.role: Accessible.List

    Keys.onPressed: event => {
        const extend = (event.modifiers & Qt.ShiftModifier) !== 0
        const page = Math.max(1, Math.floor(height / 64))
        if (event.key === Qt.Key_Up) step(-1, extend)
        else if (event.key === Qt.Key_Down) step(1, extend)
        else if (event.key === Qt.Key_PageUp) step(-page, extend)
        else if (event.key === Qt.Key_PageDown) step(page, extend)
        else if (event.key === Qt.Key_Home) showBeginning()
        else if (event.key === Qt.Key_End) showEnd()
        else if ((event.key === Qt.Key_Space || event.key === Qt.Key_Return || event.key === Qt.Key_Enter) && ticking && currentItem)
            tick(currentIndex, !currentItem.isTicked, extend)
        else return
        event.accepted = true
    }
}
