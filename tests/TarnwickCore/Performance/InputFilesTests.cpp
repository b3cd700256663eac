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

// The folder can be moved with the files below it; changes are noticed.
TEST(InputFiles, areFoundWhereTheFolderIsMoved) {
    const TemporaryFolder folder;
    const fs::path old = folder.path() / "old", other = folder.path() / "other.wav";
    write(old / "media/clip.mp4", "frames");
    write(other, "samples");
    Performance made;
    made.inputs = inputsBeside(
        {*inputOfFile("0", old / "media/clip.mp4"), *inputOfFile("audio", other)}, old);
    EXPECT_EQ(made.inputs[0].file, "media/clip.mp4");
    EXPECT_EQ(made.inputs[1].file, other.string());
    const fs::path moved = folder.path() / "moved";
    fs::rename(old, moved);
    FoundInputs found = inputFilesOf(made, moved);
    EXPECT_EQ(found.files,
              (std::vector<InputFile>{{"0", moved / "media/clip.mp4"}, {"audio", other}}));
    EXPECT_TRUE(found.sentences.empty());
    // Saved elsewhere, the performance still finds them.
    made.inputs = inputsBeside(made.inputs, folder.path() / "copies", moved);
    EXPECT_EQ(inputFilesOf(made, folder.path() / "copies").files, found.files);

    write(other, "Samples");
    fs::remove(moved / "media/clip.mp4");
    found = inputFilesOf(made, folder.path() / "copies");
    EXPECT_EQ(found.files, (std::vector<InputFile>{{"audio", other}}));
    ASSERT_EQ(found.sentences.size(), 2u);
    EXPECT_TRUE(found.sentences[0].ends_with("of channel 0 is missing, so the input is black."));
    EXPECT_EQ(found.sentences[1],
              other.string() + " of the sound input has changed since the performance.");
}

} // namespace
} // namespace tarnwick
