#include <gmock/gmock.h>

#include <QApplication>

int main(int argc, char** argv)
{
    // Before QApplication: test discovery runs this program while building,
    // where there may be no display.
    if (!qEnvironmentVariableIsSet("ZANDVOET_TEST_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleMock(&argc, argv);
    QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
