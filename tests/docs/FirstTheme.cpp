// A host's colours and language, taken from the installed library: what is built into it has come along, and its exceptions can
// be caught.
#include <QXSDKKovalinKit/QXSDKKovalinKit.h>

#include <iostream>

int main()
{
    QXSDKKovalinSetPreferredLanguages({QStringLiteral("de-AT")});
    auto builder = QXSDKKovalinStickerPickerTheme::darkTheme()->toBuilder();
    const auto config = QXSDKKovalinStickerPickerConfigBuilder()
                            .withShowSearchPills(false)
                            .withTheme(builder.withSearchColor(QColor(255, 200, 0)).build())
                            .build();
    std::cout << QXSDKKovalinCurrentLanguage().toStdString() << ", background "
              << config->theme()->backgroundColor().name().toStdString() << '\n';
    try {
        builder.withSearchPillColors(QList<QColor>());
    } catch (const kovalin::platform::PlatformException& exception) {
        std::cout << exception.reason().toStdString() << '\n';
    }
}
