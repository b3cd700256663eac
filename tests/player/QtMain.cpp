// Runs the tests of windows on Qt's platform without a screen, with folders of their own.
#include "tests/player/QtMain.h"

#include "TarnwickBase/EndNow.h"
#include "TarnwickBase/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <QApplication>
#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif

namespace {

int run(int count, char** words) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const tarnwick::TemporaryFolder own; // the user's lists and settings are not touched
    for (const char* variable : {"XDG_STATE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME"})
        qputenv(variable, QByteArray::fromStdString(own.path().string()));
    testing::InitGoogleTest(&count, words);
    QApplication application(count, words);
    return RUN_ALL_TESTS();
}

} // namespace

int main(int count, char** words) {
    const int status = run(count, words);
#ifdef __SANITIZE_ADDRESS__
    __lsan_do_leak_check(); // which exit() would call
#endif
    tarnwick::endNow(status); // as the player ends
}
