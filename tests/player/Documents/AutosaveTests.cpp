#include "TarnwickBase/TemporaryFolder.h"
#include "TarnwickBase/WholeFile.h"
#include "player/Model/Autosave.h"
#include "player/Model/DraftKeeper.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <csignal>
#include <fstream>
#include <string>
#include <unistd.h>
#include <vector>

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

// Many drafts in a row: the newest is kept. A folder that is a file, as a full disk: one sentence
// until a draft is kept again.
TEST(DraftKeeper, keepsTheNewestDraftAndSaysOnceIfItCannot) {
    const TemporaryFolder folder;
    const std::filesystem::path drafts = folder.path() / "drafts";
    std::vector<std::string> sentences;
    DispatchQueue queue;
    {
        std::ofstream(drafts) << "not a folder";
        DraftKeeper keeper(queue, drafts, nullptr,
                           [&](const std::string& sentence) { sentences.push_back(sentence); });
        for (int count = 0; count < 3; ++count) {
            keeper.keep(draftOf(std::to_string(count)));
            queue.sync([] {});
        }
        EXPECT_EQ(sentences.size(), 1u);
        std::filesystem::remove(drafts);
        for (int count = 0; count < 100; ++count)
            keeper.keep(draftOf(std::to_string(count)));
    }
    queue.sync([] {});
    const auto left = leftDrafts(drafts);
    ASSERT_EQ(left.size(), 1u);
    EXPECT_EQ(left[0].draft.text, "99");
    DraftKeeper again(queue, drafts, Autosave::takeOver(left[0].folder), {});
    again.discard();
    queue.sync([] {});
    EXPECT_TRUE(leftDrafts(drafts).empty());
    EXPECT_EQ(sentences.size(), 1u);
}

} // namespace
} // namespace tarnwick::player
