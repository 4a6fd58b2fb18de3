// The file of a message: a small picture of it, or its kind and name.
import QtQuick
import Chatsum

Item {
    id: view

    property string kind: ""
    property string name: ""
    property string url: ""
    property color ink: Theme.text
    property real widest: 300

    /// Whether there is a picture, or one on its way.
    readonly property bool isPicture: url !== "" && picture.status !== Image.Error
    readonly property var glyphs: ({ image: "picture", pdf: "file", movie: "video", audio: "sound" })

    // A picture takes the same room whatever its shape, so that nothing moves when it comes.
    implicitWidth: isPicture ? 240 : sign.width + Theme.space + words.width
    implicitHeight: isPicture ? 180 : sign.height

    Image {
        id: picture
        anchors.fill: parent
        visible: view.isPicture
        source: view.url
        sourceSize: Qt.size(480, 360)
        asynchronous: true
        fillMode: Image.PreserveAspectCrop
        Rectangle {
            anchors.fill: parent
            visible: picture.status !== Image.Ready
            radius: 11
            color: Theme.hover
            Glyph {
                anchors.centerIn: parent
                width: 32
                height: 32
                name: "picture"
                color: Theme.softText
            }
        }
    }
    Glyph {
        id: sign
        visible: !view.isPicture
        width: Theme.fontSize + 8
        height: width
        color: view.ink
        name: view.glyphs[view.kind] || "attachment"
    }
    TextMetrics {
        id: metrics
        font: words.font
        text: view.name
    }
    Text {
        id: words
        visible: !view.isPicture
        x: sign.width + Theme.space
        width: Math.min(Math.ceil(metrics.advanceWidth) + 1, view.widest - x)
        anchors.verticalCenter: sign.verticalCenter
        text: view.name
        textFormat: Text.PlainText
        elide: Text.ElideMiddle
        maximumLineCount: 1
        color: view.ink
        font.pixelSize: Theme.fontSize
    }
}
