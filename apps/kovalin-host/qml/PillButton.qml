import QtQuick

// A small button with a text.
Rectangle {
    id: button

    required property QtObject look
    property string text: ""
    property bool isChosen: false

    signal tapped

    implicitWidth: label.implicitWidth + 22
    implicitHeight: 30
    radius: height / 2
    color: isChosen ? look.accent : "transparent"
    border.width: isChosen ? 0 : 1
    border.color: look.line
    opacity: area.pressed ? 0.6 : 1
    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.onPressAction: button.tapped()

    Text {
        id: label
        anchors.centerIn: parent
        text: button.text
        textFormat: Text.PlainText
        color: button.isChosen ? button.look.textOnAccent : button.look.text
        font.pixelSize: 13
    }
    MouseArea {
        id: area
        anchors.fill: parent
        onClicked: button.tapped()
    }
}
