import QtQuick

// Who is written to, and the switches of the window.
Rectangle {
    id: bar

    required property QtObject host
    required property QtObject look

    implicitHeight: 56
    color: look.bar

    Column {
        anchors.left: parent.left
        anchors.leftMargin: bar.look.margin
        anchors.right: switches.left
        anchors.rightMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        spacing: 1

        Text {
            width: parent.width
            text: bar.host.friendName.split(",")[0]
            textFormat: Text.PlainText
            elide: Text.ElideRight
            horizontalAlignment: Text.AlignLeft
            color: bar.look.text
            font.pixelSize: 18
            font.bold: true
        }
        Text {
            width: parent.width
            text: bar.host.isLoggedIn ? "Stickers are on" : "Log in for stickers"
            textFormat: Text.PlainText
            elide: Text.ElideRight
            horizontalAlignment: Text.AlignLeft
            color: bar.look.lesserText
            font.pixelSize: bar.look.smallTextSize
        }
    }
    Row {
        id: switches
        anchors.right: parent.right
        anchors.rightMargin: bar.look.margin
        anchors.verticalCenter: parent.verticalCenter
        spacing: 6

        PillButton {
            objectName: "host_theme"
            look: bar.look
            text: "Dark"
            isChosen: bar.host.isDark
            onTapped: bar.host.isDark = !bar.host.isDark
        }
        PillButton {
            objectName: "host_direction"
            look: bar.look
            text: "RTL"
            isChosen: bar.host.isMirrored
            onTapped: bar.host.isMirrored = !bar.host.isMirrored
        }
        PillButton {
            objectName: "host_login"
            look: bar.look
            text: bar.host.isLoggedIn ? "Log out" : "Log in"
            onTapped: bar.host.logInOrOut()
        }
    }
}
