// The tests of the window's layer need an application object, and no screen.

#include "app/LocalizedText.h"

#include <QApplication>

#include <gmock/gmock.h>

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    ::testing::InitGoogleMock(&argc, argv);
    const QApplication application(argc, argv);
    nivor::installTexts(QStringLiteral("en"));
    return RUN_ALL_TESTS();
}
