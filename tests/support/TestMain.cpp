#include <QtGui/QGuiApplication>

#include <gtest/gtest.h>

// Every test program has an application object, off screen, so that the main queue runs and colours and pictures work.
int main(int argc, char** argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    testing::InitGoogleTest(&argc, argv);
    const QGuiApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
