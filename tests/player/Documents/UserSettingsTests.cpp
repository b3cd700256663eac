#include "player/App/UserSettings.h"
#include "tests/player/QtMain.h"

#include <gtest/gtest.h>

#include <QFile>
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

// Another QSettings of the process would wait for the one that writes.
bool fileHas(const QString& name, const char* text) {
    QFile bytes(name);
    return bytes.open(QIODevice::ReadOnly) && bytes.readAll().contains(text);
}

// QSettings writes once it has the lock of the file.
TEST(UserSettings, areSetWhileTheFileCannotBeWritten) {
    const QString name = file().fileName();
    UserSettings settings;
    settings.set("test/first", 1);
    ASSERT_TRUE(becomesTrue([&] { return fileHas(name, "first=1"); }));
    QLockFile lock(name + ".lock");
    ASSERT_TRUE(lock.lock());
    settings.set("test/waits", 1);
    settings.set("test/waits", 2);
    EXPECT_EQ(settings.value("test/waits"), 2);
    EXPECT_FALSE(fileHas(name, "waits"));
    lock.unlock();
    EXPECT_TRUE(becomesTrue([&] { return fileHas(name, "waits=2"); }));
}

} // namespace
} // namespace tarnwick::player
