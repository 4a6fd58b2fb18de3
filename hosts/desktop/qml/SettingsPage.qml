// How the window looks, and how reports begin.
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Chatsum

FocusScope {
    id: page

    signal closed()

    Accessible.role: Accessible.Pane
    Accessible.name: qsTr("Settings")
    onVisibleChanged: if (visible) Settings.reload()
    Component.onCompleted: if (visible) Settings.reload()

    Rectangle {
        anchors.fill: parent
        color: Theme.window
    }
    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        PaneHeader {
            Layout.fillWidth: true
            hasAvatar: false
            title: qsTr("Settings")
            ActionButton {
                objectName: "settingsDone"
                focus: true
                text: qsTr("Done")
                onClicked: page.closed()
            }
        }
        ScrollView {
            id: scroll
            Layout.fillWidth: true
            Layout.fillHeight: true
            contentWidth: availableWidth
            ScrollBar.vertical: ThinScrollBar {
                parent: scroll
                x: scroll.width - width
                height: scroll.height
            }

            ColumnLayout {
                width: Math.min(620, scroll.availableWidth - 2 * Theme.wide)
                x: (scroll.availableWidth - width) / 2
                spacing: Theme.space

                SettingHeading { text: qsTr("Appearance") }
                SettingRow {
                    title: qsTr("Colours")
                    about: qsTr("Light, dark, or as the system has it.")
                    Segments {
                        objectName: "scheme"
                        title: qsTr("Colours")
                        current: Theme.scheme
                        choices: [{ text: qsTr("System") }, { text: qsTr("Light") }, { text: qsTr("Dark") }]
                        onChosen: index => Theme.scheme = index
                    }
                }

                SettingHeading { text: qsTr("New reports") }
                Repeater {
                    model: Settings
                    SettingRow {
                        id: row
                        required property int index
                        required title
                        required about
                        required property string kind
                        required property string value
                        required property var choices

                        readonly property int place: choices.findIndex(choice => choice.word === value)

                        SwitchBox {
                            objectName: "switch" + row.index
                            visible: row.kind === "switch"
                            text: row.title
                            checked: row.value === "yes"
                            onToggled: {
                                Settings.set(row.index, checked ? "yes" : "no")
                                checked = Qt.binding(() => row.value === "yes")
                            }
                        }
                        Segments {
                            objectName: "choice" + row.index
                            visible: row.kind !== "switch"
                            title: row.title
                            current: row.place
                            choices: row.choices
                            onChosen: index => Settings.set(row.index, row.choices[index].word)
                        }
                    }
                }
                NoteLine {
                    Layout.fillWidth: true
                    isProblem: true
                    text: Settings.error
                }
                Item { Layout.preferredHeight: Theme.wide }
            }
        }
    }
}
