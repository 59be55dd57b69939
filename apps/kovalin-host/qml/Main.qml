import QtQuick
import kovalin.host 1.0

// The chat with the picker below it, or beside it where there is room.
Rectangle {
    id: root

    required property QtObject host
    readonly property bool isWide: width >= 720
    readonly property real pickerWidth: isWide ? Math.round(Math.min(440, width * 0.46)) : width
    readonly property real pickerHeight: isWide ? height : Math.round(height * 0.44)
    readonly property real besidePicker: isWide && host.isPickerOpen ? pickerWidth : 0
    readonly property real belowChat: !isWide && host.isPickerOpen ? pickerHeight : 0

    color: chatLook.background

    Look {
        id: chatLook
        isDark: root.host.isDark
    }
    Item {
        x: root.host.isMirrored ? root.besidePicker : 0
        width: root.width - root.besidePicker
        height: root.height - root.belowChat
        LayoutMirroring.enabled: root.host.isMirrored
        LayoutMirroring.childrenInherit: true

        TopBar {
            id: topBar
            anchors.left: parent.left
            anchors.right: parent.right
            host: root.host
            look: chatLook
        }
        FriendStrip {
            id: friends
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.top: topBar.bottom
            host: root.host
            look: chatLook
        }
        Messages {
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.top: friends.bottom
            anchors.bottom: compose.top
            host: root.host
            look: chatLook
        }
        ComposeBar {
            id: compose
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.bottom: parent.bottom
            host: root.host
            look: chatLook
        }
    }
    // Not mirrored: the picker sees to that itself.
    Item {
        id: pickers
        objectName: "host_pickers"
        x: root.isWide && !root.host.isMirrored ? root.width - width : 0
        y: root.height - height
        width: root.pickerWidth
        height: root.pickerHeight
        visible: root.host.isPickerOpen

        Repeater {
            model: root.host.pickerCount

            EmbeddedItem {
                required property int index

                objectName: "host_picker"
                x: index * width
                width: pickers.width / root.host.pickerCount
                height: pickers.height
                Component.onCompleted: root.host.placePicker(index, this)
            }
        }
        Rectangle {
            visible: root.isWide
            x: root.host.isMirrored ? parent.width - 1 : 0
            width: 1
            height: parent.height
            color: chatLook.line
        }
    }
}
