// A piece of text in the window's font and colour.
import QtQuick
import Chatsum

Text {
    property bool soft: false

    color: soft ? Theme.softText : Theme.text
    font.pixelSize: Theme.fontSize
    textFormat: Text.PlainText
    Accessible.role: Accessible.StaticText
    Accessible.name: text
    Accessible.ignored: text === ""
}
