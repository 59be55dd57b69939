// A chat's window: what was chosen, a text field with the avatar icon beside it, and the picker below.
import QtQuick
import QXSDKKovalinKit

Window {
    id: window

    required property string backend
    required property bool quitWhenShown

    width: 412
    height: 560
    visible: true

    // Who this host is, and where its servers are; then the kits that come with the library.
    Component.onCompleted: {
        KovalinClient.clientId = "example-host"
        KovalinClient.contentBaseUrl = backend
        KovalinClient.authenticationBaseUrl = backend + "/accounts"
        KovalinClient.apiBaseUrl = backend + "/api"
        KovalinClient.installDefaultKits()
    }

    // The picker is there from the first turn of the event loop on, as a child of its item.
    onFrameSwapped: if (quitWhenShown && stickers.children.length > 0) Qt.quit()

    Image {
        id: chosen
        width: 72
        height: 72
        fillMode: Image.PreserveAspectFit
    }

    KovalinIcon {
        id: icon
        picker: stickers
        anchors { left: parent.left; verticalCenter: field.verticalCenter; margins: 8 }
        width: 32
        height: 32

        MouseArea {
            anchors.fill: parent
            onClicked: stickers.visible = !stickers.visible
        }
    }

    TextInput {
        id: field
        anchors { top: chosen.bottom; left: icon.right; right: parent.right; margins: 8 }
        height: 32
        verticalAlignment: TextInput.AlignVCenter
    }

    KovalinStickerPicker {
        id: stickers
        anchors { top: field.bottom; left: parent.left; right: parent.right; bottom: parent.bottom; topMargin: 8 }
        theme: KovalinTheme { base: KovalinTheme.Light }
        // Stickers for what is being typed come before the popular ones.
        searchTerm: field.text
        searchMode: KovalinStickerPicker.Blend
        onStickerSelected: (url, image) => chosen.source = url
    }
}
