#include "TarnwickBase/TemporaryFolder.h"
#include "TarnwickBase/WholeFile.h"
#include "player/Model/Autosave.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <csignal>
#include <unistd.h>

namespace tarnwick::player {
namespace {

Draft draftOf(const std::string& text) {
    Draft draft{.file = "/tmp/a b.metal", .title = "a b", .text = text};
    draft.settings.values["speed"] = 0.1f;
    draft.settings.keys.set("hue", 2, 0.75f);
    return draft;
}

// Keeps drafts in another process until it is killed.
void killWhileKeeping(const std::filesystem::path& folder) {
    const pid_t child = fork();
    if (child == 0) {
        auto autosave = Autosave::make(folder);
        for (int count = 0;; ++count)
            autosave->keep(draftOf("// \xC3\xA4 " + std::to_string(count)));
    }
    usleep(100000);
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
}

TEST(Autosave, survivesAProcessThatIsKilledWhileItWrites) {
    const TemporaryFolder folder;
    const std::filesystem::path drafts = folder.path() / "drafts";
    killWhileKeeping(drafts);
    killWhileKeeping(drafts);
    const auto left = leftDrafts(drafts);
    ASSERT_EQ(left.size(), 2u);
    for (const LeftDraft& one : left) {
        EXPECT_TRUE(one.draft.text.starts_with("// \xC3\xA4 "));
        EXPECT_EQ(one.draft.settings, draftOf("").settings);
        EXPECT_EQ(one.draft.file, draftOf("").file);
        Autosave::takeOver(one.folder)->discard();
    }
    EXPECT_TRUE(std::filesystem::is_empty(drafts));
}

TEST(Autosave, isNotOfferedWhileItsPlayerRuns) {
    const TemporaryFolder folder;
    auto autosave = Autosave::make(folder.path());
    ASSERT_TRUE(autosave && autosave->keep(draftOf("a")));
    EXPECT_TRUE(leftDrafts(folder.path()).empty());
    autosave.reset();
    EXPECT_EQ(leftDrafts(folder.path()).size(), 1u);
}

TEST(Autosave, ignoresFilesThatAreNotDrafts) {
    const TemporaryFolder folder;
    std::filesystem::create_directories(folder.path() / "a");
    for (const char* bytes : {"", "{", "[]", "{\"text\": 3}", "\xff"}) {
        writeWholeFile(folder.path() / "a" / "draft.json", bytes);
        EXPECT_TRUE(leftDrafts(folder.path()).empty());
    }
    EXPECT_TRUE(leftDrafts(folder.path() / "none").empty());
    EXPECT_EQ(Autosave::make("/proc/none"), nullptr);
}

} // namespace
} // namespace tarnwick::player
