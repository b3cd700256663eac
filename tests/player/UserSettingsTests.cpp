#include "player/App/UserSettings.h"
#include "tests/player/QtMain.h"

#include <gtest/gtest.h>

#include <QLockFile>
#include <QSettings>

namespace tarnwick::player {
namespace {

QSettings file() {
    return {QSettings::IniFormat, QSettings::UserScope, QStringLiteral("tarnwick"),
            QStringLiteral("player")};
}

TEST(UserSettings, keepWhatOtherPlayersChose) {
    {
        UserSettings one, other;
        one.set("test/theme", "dark");
        other.set("test/folder", "/films");
        one.set("test/theme", "light");
        EXPECT_FALSE(one.value("test/folder").isValid());
    }
    const UserSettings next;
    EXPECT_EQ(next.value("test/theme"), "light");
    EXPECT_EQ(next.value("test/folder"), "/films");
    EXPECT_EQ(next.value("test/delay", 5), 5);
}

// QSettings writes once it has the lock of the file.
TEST(UserSettings, areSetWhileTheFileCannotBeWritten) {
    UserSettings settings;
    settings.set("test/first", 1);
    ASSERT_TRUE(becomesTrue([] { return file().value("test/first").toInt() == 1; }));
    QLockFile lock(file().fileName() + ".lock");
    ASSERT_TRUE(lock.lock());
    settings.set("test/waits", 1);
    settings.set("test/waits", 2);
    EXPECT_EQ(settings.value("test/waits"), 2);
    EXPECT_FALSE(file().contains("test/waits"));
    lock.unlock();
    EXPECT_TRUE(becomesTrue([] { return file().value("test/waits").toInt() == 2; }));
}

} // namespace
} // namespace tarnwick::player
