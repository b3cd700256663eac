// Runs the tests of windows on Qt's platform without a screen, with folders of their own.
#include "tests/player/QtMain.h"

#include "TarnwickBase/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <QApplication>

int main(int count, char** words) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const tarnwick::TemporaryFolder own; // the user's lists and settings are not touched
    for (const char* variable : {"XDG_STATE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME"})
        qputenv(variable, QByteArray::fromStdString(own.path().string()));
    testing::InitGoogleTest(&count, words);
    QApplication application(count, words);
    return RUN_ALL_TESTS();
}
