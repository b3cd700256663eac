// Files on a file system that does not answer for a while: the window does.
#include "TarnwickBase/TemporaryFolder.h"
#include "TarnwickBase/WholeFile.h"
#include "TarnwickPlatform/Bundle/TextFile.h"
#include "TarnwickPlatform/Dispatch/HostClock.h"
#include "player/SettingsFiles/SettingsFileActions.h"
#include "player/Window/MainWindow.h"
#include "tests/player/QtMain.h"

#include <gtest/gtest.h>
#include <sys/syscall.h>

#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdarg>
#include <fcntl.h>
#include <string_view>
#include <thread>
#include <unistd.h>

namespace {

constexpr std::string_view slowFolder = "tarnwick-slow-files";
std::atomic<bool> isStalled = false;

} // namespace

// Instead of the C library's: files below the slow folder are opened once it is not stalled.
extern "C" int open(const char* path, int flags, ...) {
    std::va_list list;
    va_start(list, flags);
    const int mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(list, int) : 0;
    va_end(list);
    while (isStalled && std::string_view(path).find(slowFolder) != std::string_view::npos)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    return static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, flags, mode));
}

namespace tarnwick::player {
namespace {

constexpr double stall = 1;        // seconds
constexpr double longestGap = 0.6; // seconds, of a machine that builds meanwhile
constexpr const char* text = "// @param red 0.25 0.0 1.0\n"
                             "float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {\n"
                             "    return float4(p.red, 0.0, 1.0, 1.0);\n"
                             "}\n";

class SlowFiles : public testing::Test {
  protected:
    SlowFiles() : folder(std::filesystem::temp_directory_path(), std::string(slowFolder)) {
        writeWholeFile(file("a.metal"), text);
        window.show();
        QObject::connect(&ticks, &QTimer::timeout, [this] {
            const double now = currentMediaTime();
            gap = std::max(gap, now - std::exchange(ticked, now));
        });
    }
    ~SlowFiles() override { isStalled = false; }

    std::filesystem::path file(const char* name) const { return folder.path() / name; }
    QString name(const char* file_) const { return QString::fromStdString(file(file_).string()); }
    // The file system does not answer while `work` is begun and for some time after it.
    template <typename Work> void stalled(const Work& work) {
        QTest::qWait(50);
        ticked = currentMediaTime();
        gap = 0;
        ticks.start(5);
        isStalled = true;
        work();
        QTest::qWait(static_cast<int>(stall * 1000));
        isStalled = false;
        ticks.stop();
        EXPECT_LT(gap, longestGap);
    }
    OpenDocument* opened() {
        window.open({name("a.metal")});
        EXPECT_TRUE(becomesTrue([&] { return player.active() != nullptr; }));
        return player.active();
    }
    void trigger(QKeySequence::StandardKey key) { QTest::keySequence(&window, QKeySequence(key)); }
    QMessageBox* message() const { return window.findChild<QMessageBox*>(); }

    TemporaryFolder folder;
    Player player;
    MainWindow window{player};
    QTimer ticks;
    double ticked = 0, gap = 0;
};

TEST_F(SlowFiles, areOpenedSavedAndReadAgainWhileTheWindowAnswers) {
    stalled([&] { window.open({name("a.metal")}); });
    ASSERT_TRUE(becomesTrue([&] { return player.active() != nullptr; }));
    OpenDocument* document = player.active();

    document->replaceText("// first\n");
    stalled([&] {
        trigger(QKeySequence::Save);
        QTest::qWait(300); // the first text is on its way
        document->replaceText("// second\n");
        trigger(QKeySequence::Save);
        document->replaceText("// third\n");
    });
    ASSERT_TRUE(becomesTrue([&] { return !document->isFileBusy(); }));
    const auto saved = fileText(file("a.metal"));
    EXPECT_TRUE(saved == "// second\n" || saved == "// third\n") << *saved;
    EXPECT_EQ(document->document().isModified(), saved == "// second\n");
    EXPECT_EQ(document->document().text(), "// third\n");

    stalled([&] { trigger(QKeySequence::Save); });
    ASSERT_TRUE(becomesTrue([&] { return !document->document().isModified(); }));
}

// Nothing that is typed while the file is read again is lost.
TEST_F(SlowFiles, doNotReplaceWhatIsTypedMeanwhile) {
    OpenDocument* document = opened();
    writeWholeFile(file("a.metal"), "// by another program, longer than before\n");
    stalled([&] {
        QTest::qWait(1000); // the player looks at its files
        document->setText("// typed\n");
    });
    QTest::qWait(1000);
    EXPECT_EQ(document->document().text(), "// typed\n");
    EXPECT_TRUE(document->document().isModified());
}

TEST_F(SlowFiles, loadSettingsWhileTheWindowAnswers) {
    OpenDocument* document = opened();
    writeWholeFile(file("b.json"), Settings{.values = {{"red", 0.5f}}}.encode());
    stalled([&] { window.open({name("b.json")}); });
    EXPECT_TRUE(
        becomesTrue([&] { return document->document().settings().values.contains("red"); }));
}

TEST_F(SlowFiles, areWaitedForWhenTheWindowCloses) {
    OpenDocument* document = opened();
    document->replaceText("// saved at last\n");
    stalled([&] {
        trigger(QKeySequence::Save);
        EXPECT_FALSE(window.close());
        ASSERT_TRUE(becomesTrue([&] { return message() != nullptr; }));
        message()->reject(); // stay
        ASSERT_TRUE(becomesTrue([&] { return message() == nullptr; }));
        EXPECT_TRUE(window.isVisible());
        EXPECT_FALSE(window.close());
    });
    EXPECT_TRUE(becomesTrue([&] { return !window.isVisible(); }));
    EXPECT_EQ(fileText(file("a.metal")), "// saved at last\n");
}

TEST_F(SlowFiles, areLeftWithADraftIfTheAuthorDoesNotWait) {
    OpenDocument* document = opened();
    document->replaceText("// in the draft\n");
    stalled([&] {
        trigger(QKeySequence::Save);
        EXPECT_FALSE(window.close());
        ASSERT_TRUE(becomesTrue([&] { return message() != nullptr; }));
        for (QAbstractButton* button : message()->buttons())
            if (message()->buttonRole(button) == QMessageBox::DestructiveRole)
                button->click();
        EXPECT_TRUE(becomesTrue([&] { return !window.isVisible(); }));
        player.keepDraftsNow();
        const auto isDraft = [](const auto& entry) {
            return fileText(entry.path()).value_or("").find("in the draft") != std::string::npos;
        };
        EXPECT_TRUE(std::ranges::any_of(
            std::filesystem::recursive_directory_iterator(draftsFolder()), isDraft));
    });
    document->discardDraft();
}

} // namespace
} // namespace tarnwick::player
