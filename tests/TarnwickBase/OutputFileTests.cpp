#include "TarnwickBase/OutputFile.h"
#include "TarnwickBase/WholeFile.h"
#include "tests/Thrown.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

class OutputFile : public testing::Test {
  protected:
    fs::path file(const std::string& name, const std::string& bytes) const {
        std::ofstream(folder_.path() / name, std::ios::binary) << bytes;
        return folder_.path() / name;
    }
    static std::string bytesOf(const fs::path& file) {
        std::ostringstream bytes;
        bytes << std::ifstream(file, std::ios::binary).rdbuf();
        return bytes.str();
    }
    // The error for an output of this kind, without the name of the file.
    static std::string refusal(FileKind kind, const fs::path& file,
                               const std::vector<std::string_view>& inputs = {}) {
        const std::string said =
            thrownBy<std::runtime_error>([&] { checkOutputFile(file, kind, inputs); });
        return said.substr(said.empty() ? 0 : file.string().size() + 1);
    }

    const TemporaryFolder folder_;
};

const std::string png = "\x89PNG\r\n\x1a\nrest", movie = std::string("\0\0\0\x14", 4) + "ftypisom";

TEST_F(OutputFile, replacesItsOwnKindAndEmptyFilesOnly) {
    const fs::path picture = file("a.png", png), text = file("b.png", "float4 shade()");
    EXPECT_EQ(refusal(FileKind::pngPicture, picture), "");
    EXPECT_EQ(refusal(FileKind::pngPicture, file("empty.png", "")), "");
    EXPECT_EQ(refusal(FileKind::pngPicture, folder_.path() / "new.png"), "");
    EXPECT_EQ(refusal(FileKind::quickTimeMovie, file("a.mp4", movie)), "");
    EXPECT_EQ(refusal(FileKind::pngPicture, text),
              "already exists and is not replaced, because it is no PNG picture.");
    EXPECT_EQ(refusal(FileKind::wavSound, picture),
              "already exists and is not replaced, because it is no WAV sound.");
    EXPECT_EQ(refusal(FileKind::episode, text), "already exists and is not replaced.");
    EXPECT_EQ(refusal(FileKind::pngPicture, folder_.path()), "is a folder and is not replaced.");
    EXPECT_EQ(refusal(FileKind::pngPicture, "/dev/null"),
              "is not a regular file and is not replaced.");
    EXPECT_EQ(refusal(FileKind::pngPicture, folder_.path() / "none/a.png"),
              "cannot be written: No such file or directory.");
}

TEST_F(OutputFile, neverReplacesAnInput) {
    const std::string input = file("a.png", png).string();
    fs::create_symlink(input, folder_.path() / "link.png");
    fs::create_hard_link(input, folder_.path() / "hard.png");
    EXPECT_EQ(refusal(FileKind::pngPicture, input, {"no file", input}),
              "is the input file; the output needs another name.");
    for (const char* other : {"link.png", "hard.png"})
        EXPECT_EQ(refusal(FileKind::pngPicture, folder_.path() / other, {input}),
                  "and " + input + " are the same file, an input; the output needs another name.");
}

TEST_F(OutputFile, hasTheEndingOfItsKind) {
    const auto refusal = [](FileKind kind, const char* name) {
        return thrownBy<OutputNameError>([&] { checkOutputEnding(name, kind, "-o"); });
    };
    EXPECT_EQ(refusal(FileKind::pngPicture, "a.b.PNG"), "");
    EXPECT_EQ(refusal(FileKind::release, "any"), "");
    for (const char* name : {"a.mov", "a", ".mp4", "mp4"})
        EXPECT_EQ(refusal(FileKind::mpeg4Movie, name),
                  "-o writes files that end in .mp4, not \"" + std::string(name) + "\".");
}

TEST_F(OutputFile, isRecognisedByItsFirstBytes) {
    const std::pair<FileKind, std::string> starts[]{
        {FileKind::pngPicture, png},
        {FileKind::wavSound, "RIFF....WAVEfmt "},
        {FileKind::mpeg4Movie, movie},
        {FileKind::chapterList, "{\"duration\":7}"},
        {FileKind::spirvModule, std::string("\x03\x02\x23\x07\0", 5)},
        {FileKind::wgslText, "// kernel check, 7 lines\n"}};
    for (const auto& [kind, start] : starts) {
        EXPECT_TRUE(holds(kind, file("whole", start))) << nameOf(kind);
        EXPECT_FALSE(holds(kind, file("cut", start.substr(0, 3)))) << nameOf(kind);
        for (const auto& [other, _] : starts)
            EXPECT_EQ(holds(other, file("whole", start)), other == kind) << nameOf(kind);
    }
    EXPECT_FALSE(holds(FileKind::pngPicture, folder_.path() / "missing"));
}

TEST_F(OutputFile, isWrittenWholeOrNotAtAll) {
    const fs::path target = file("a", "old");
    fs::create_symlink("a", folder_.path() / "link");
    fs::permissions(target, fs::perms::owner_read | fs::perms::owner_write);
    writeWholeFile(folder_.path() / "link", "new");
    EXPECT_TRUE(fs::is_symlink(folder_.path() / "link"));
    EXPECT_EQ(bytesOf(target), "new");
    {
        const UnfinishedFile unfinished(target);
        std::ofstream(unfinished.path()) << "half";
        EXPECT_EQ(bytesOf(target), "new");
    }
    EXPECT_EQ(bytesOf(target), "new");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder_.path()), {}), 3); // with the owner
    EXPECT_THROW(writeWholeFile("/dev/null", "x"), WholeFileError);
    EXPECT_EQ(thrownBy<WholeFileError>([&] { writeWholeFile(folder_.path(), "x"); }),
              folder_.path().string() + " cannot be written: It is a folder.");
}

} // namespace
} // namespace tarnwick
