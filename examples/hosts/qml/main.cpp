// Loads Main.qml, which has all that this host knows of the picker.
//
//     kovalin_qml_host --backend http://127.0.0.1:8080
//
// draws the stickers of a development server (kovalin-backend --port 8080 --content …).
#include <QtCore/QCommandLineParser>
#include <QtGui/QGuiApplication>
#include <QtQml/QQmlApplicationEngine>

int main(int argc, char** argv)
{
    QGuiApplication application(argc, argv);
    // By these the system knows the folder in which pictures, packs and models are kept.
    QCoreApplication::setOrganizationName(QStringLiteral("Example"));
    QCoreApplication::setApplicationName(QStringLiteral("kovalin_qml_host"));

    QCommandLineParser parser;
    parser.addHelpOption();
    const QCommandLineOption backend(QStringLiteral("backend"),
                                     QStringLiteral("The server, without a slash at its end."), QStringLiteral("URL"),
                                     QStringLiteral("http://127.0.0.1:8080"));
    const QCommandLineOption quitWhenShown(QStringLiteral("quit-when-shown"),
                                           QStringLiteral("End once a frame with the picker has been drawn."));
    parser.addOptions({backend, quitWhenShown});
    parser.process(application);

    QQmlApplicationEngine engine;
    engine.addImportPath(QStringLiteral(KOVALIN_IMPORT_PATH));
    engine.setInitialProperties({{QStringLiteral("backend"), parser.value(backend)},
                                 {QStringLiteral("quitWhenShown"), parser.isSet(quitWhenShown)}});
    engine.load(QUrl(QStringLiteral("qrc:/Main.qml")));
    return engine.rootObjects().isEmpty() ? 1 : QGuiApplication::exec();
}
