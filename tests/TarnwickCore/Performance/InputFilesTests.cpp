#include "TarnwickBase/TemporaryFolder.h"
#include "TarnwickCore/Performance/InputFiles.h"

#include <gtest/gtest.h>

#include <fstream>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

void write(const fs::path& file, const std::string& text) {
    fs::create_directories(file.parent_path());
    std::ofstream(file) << text;
}

Performance performed(const fs::path& clip, const fs::path& song) {
    Performance made{.start = {.inputs = {{"0", {.file = clip.string()}}}}, .length = 3};
    made.changes = {
        {1, Performance::Input{"audio", PerformedFile{.file = song.string(), .isPlayed = true}}},
        {2, Performance::Input{"0"}}};
    return made;
}

// The folder can be moved with the files below it; changes are noticed.
TEST(InputFiles, areFoundWhereTheFolderIsMoved) {
    const TemporaryFolder folder;
    const fs::path old = folder.path() / "old", other = folder.path() / "other.wav";
    write(old / "media/clip.mp4", "frames");
    write(other, "samples");
    Performance made = keptIn(old, performed(old / "media/clip.mp4", other));
    EXPECT_EQ(made.start.inputs.at("0").file, "media/clip.mp4");
    EXPECT_EQ(made.start.inputs.at("0").bytes, 6u);
    const fs::path moved = folder.path() / "moved";
    fs::rename(old, moved);
    FoundInputs found = foundInputs(made, moved);
    EXPECT_EQ(found.performance,
              foundInputs(keptIn({}, performed(moved / "media/clip.mp4", other)), folder.path())
                  .performance);
    EXPECT_TRUE(found.sentences.empty());
    // Saved elsewhere, the performance still finds them.
    made = movedTo(folder.path() / "copies", made, moved);
    EXPECT_EQ(foundInputs(made, folder.path() / "copies").performance, found.performance);

    write(other, "Samples");
    fs::remove(moved / "media/clip.mp4");
    found = foundInputs(made, folder.path() / "copies");
    EXPECT_TRUE(found.performance.start.inputs.empty());
    EXPECT_TRUE(playsSound(found.performance));
    ASSERT_EQ(found.sentences.size(), 2u);
    EXPECT_TRUE(found.sentences[0].ends_with("of channel 0 is missing, so the input is black."));
    EXPECT_EQ(found.sentences[1],
              other.string() + " of the sound input has changed since the performance.");
}

// As --channel and --audio give them.
TEST(InputFiles, areReplacedThroughout) {
    Performance made = performed("/clip.mp4", "/song.wav");
    made.changes.push_back({2.5, Performance::Input{"3.0", PerformedFile{.file = "/a.png"}}});
    made.changes.push_back({2.5, HeardLevels{std::make_shared<const LevelCodes>()}});
    EXPECT_EQ(inputSets(made).size(), 4u);
    made = withInput(made, "0", {.file = "/b.png"});
    made = withInput(made, "3", {.file = "/c.png"});
    made = withInput(made, "audio", {.file = "/b.wav"});
    EXPECT_TRUE(made.changes.empty());
    EXPECT_EQ(inputSets(made), std::vector{made.start.inputs});
    EXPECT_EQ(made.start.inputs.size(), 3u);
    EXPECT_TRUE(withoutSound(made, "/b.wav").start.inputs.contains("3"));
    EXPECT_FALSE(withoutSound(made, "/b.wav").start.inputs.contains("audio"));
}

} // namespace
} // namespace tarnwick
