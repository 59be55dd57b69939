// The example of the README, which is cut from here: whatever stands between the marks is shown there.

// [example]
#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include <QXSDKKovalinKit/QXSDKKovalinKit.h>

#include <iostream>

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    QFile file(QStringLiteral("packs-emoji.json"));
    if (!file.open(QIODevice::ReadOnly)) {
        return 1;
    }
    const auto document = QJsonDocument::fromJson(file.readAll()).object();

    QXSDKKovalinPrefixSearchEngine engine;
    engine.processPacks(KovalinPack::packsFromJson(document[u"packs"].toArray()), [] {});
    engine.search(QStringLiteral("red h"), {QXSDKKovalinSearchResultTypeSolovalin},
                  [](const KovalinStickerList& stickers, const QStringList& tags) {
                      std::cout << stickers.size() << " stickers, best tag " << tags.value(0).toStdString() << '\n';
                      QCoreApplication::quit();
                  });
    return QCoreApplication::exec();
}
// [example]
