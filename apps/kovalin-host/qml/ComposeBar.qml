import QtQuick
import kovalin.host 1.0

// The icons, the text that is being written, and the button that sends it.
Rectangle {
    id: bar

    required property QtObject host
    required property QtObject look

    implicitHeight: 60
    color: look.bar

    function send() {
        bar.host.send(field.text)
    }

    Connections {
        target: bar.host
        function onTextCleared() {
            field.text = ""
        }
    }
    Rectangle {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        height: 1
        color: bar.look.line
    }
    Row {
        id: icons
        anchors.left: parent.left
        anchors.leftMargin: bar.look.margin
        anchors.verticalCenter: parent.verticalCenter
        spacing: 6

        Repeater {
            model: bar.host.iconCount

            Rectangle {
                id: iconButton

                required property int index

                width: 44
                height: 44
                radius: 22
                color: bar.host.isPickerOpen ? bar.look.bubble : "transparent"
                border.width: 1
                border.color: bar.host.isPickerOpen ? bar.look.accent : bar.look.line
                Accessible.role: Accessible.Button
                Accessible.name: "Stickers"
                Accessible.onPressAction: bar.host.isPickerOpen = !bar.host.isPickerOpen

                EmbeddedItem {
                    anchors.centerIn: parent
                    width: 36
                    height: 36
                    Component.onCompleted: bar.host.placeIcon(iconButton.index, this)
                }
                MouseArea {
                    anchors.fill: parent
                    onClicked: bar.host.isPickerOpen = !bar.host.isPickerOpen
                }
            }
        }
    }
    Rectangle {
        anchors.left: icons.right
        anchors.leftMargin: 8
        anchors.right: sendButton.left
        anchors.rightMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        height: 40
        radius: 20
        color: bar.look.field
        border.width: field.activeFocus ? 1.5 : 1
        border.color: field.activeFocus ? bar.look.accent : bar.look.line

        TextInput {
            id: field
            objectName: "host_field"
            anchors.fill: parent
            anchors.leftMargin: 16
            anchors.rightMargin: 16
            verticalAlignment: TextInput.AlignVCenter
            horizontalAlignment: TextInput.AlignLeft
            color: bar.look.text
            selectionColor: bar.look.accent
            selectedTextColor: bar.look.textOnAccent
            font.pixelSize: bar.look.textSize
            maximumLength: 1000
            clip: true
            selectByMouse: true
            Accessible.role: Accessible.EditableText
            Accessible.name: "Message"
            onTextEdited: bar.host.typeText(text)
            onAccepted: bar.send()
        }
        Text {
            anchors.fill: field
            visible: field.text === "" && field.preeditText === ""
            text: "Message"
            textFormat: Text.PlainText
            verticalAlignment: Text.AlignVCenter
            horizontalAlignment: Text.AlignLeft
            color: bar.look.lesserText
            font.pixelSize: bar.look.textSize
        }
    }
    PillButton {
        id: sendButton
        objectName: "host_send"
        anchors.right: parent.right
        anchors.rightMargin: bar.look.margin
        anchors.verticalCenter: parent.verticalCenter
        height: 36
        look: bar.look
        text: "Send"
        isChosen: true
        onTapped: bar.send()
    }
}
