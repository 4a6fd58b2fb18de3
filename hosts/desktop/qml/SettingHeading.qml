// The title above a group of settings.
import QtQuick
import QtQuick.Layouts
import Chatsum

Words {
    Layout.topMargin: Theme.wide + Theme.space
    Layout.bottomMargin: 4
    font.pixelSize: Theme.smallSize
    font.weight: Font.DemiBold
    color: Theme.softText
    Accessible.role: Accessible.Heading
}
