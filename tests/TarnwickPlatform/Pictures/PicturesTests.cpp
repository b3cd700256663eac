#include "TarnwickPlatform/Pictures/Halved.h"
#include "TarnwickPlatform/Pictures/JPEG.h"
#include "TarnwickPlatform/Pictures/PNG.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <functional>
#include <iterator>
#include <sstream>
#include <unistd.h>

using namespace tarnwick;
namespace fs = std::filesystem;

namespace {

// A folder of the test's own, empty at first: tests run side by side as processes.
struct Pictures : testing::Test {
    fs::path folder = fs::path(testing::TempDir()) / ("pictures" + std::to_string(getpid()));
    Pictures() {
        fs::remove_all(folder);
        fs::create_directories(folder);
    }
    ~Pictures() override { fs::remove_all(folder); }

    std::size_t files() const {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), {}));
    }
};

// 5 by 3 pixels in rows with a gap, all alpha 0.
Picture sample() {
    Picture picture{.width = 5, .height = 3, .bytesPerRow = 24};
    for (std::size_t index = 0; index < 72; ++index)
        picture.bytes.push_back(index % 4 == 3 ? 0 : static_cast<std::uint8_t>(index * 3));
    return picture;
}

std::string bytesOf(const fs::path& file) {
    std::ostringstream bytes;
    bytes << std::ifstream(file, std::ios::binary).rdbuf();
    return bytes.str();
}

std::string messageOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const PictureError& error) {
        return error.what();
    }
    return "";
}

} // namespace

TEST_F(Pictures, comeBackOpaqueFromTheirFile) {
    const Picture written = sample();
    writePNG(written, folder / "a.png");
    const Picture read = readPNG(folder / "a.png");
    ASSERT_EQ(read.width, 5u);
    ASSERT_EQ(read.height, 3u);
    for (std::size_t row = 0; row < 3; ++row)
        for (std::size_t byte = 0; byte < 20; ++byte)
            EXPECT_EQ(read.bytes[row * read.bytesPerRow + byte],
                      byte % 4 == 3 ? 0xff : written.bytes[row * 24 + byte]);
    EXPECT_EQ(files(), 1u);
}

TEST_F(Pictures, areMarkedAsOpaqueSRGB) {
    writePNG(sample(), folder / "a.png");
    const std::string bytes = bytesOf(folder / "a.png");
    EXPECT_EQ(bytes[25], 2); // colour type: RGB
    EXPECT_NE(bytes.find("sRGB"), std::string::npos);
}

TEST_F(Pictures, replaceAFileOnlyOnceTheyAreWhole) {
    writePNG(sample(), folder / "a.png");
    const std::string before = bytesOf(folder / "a.png");
    EXPECT_THROW(writePNG({}, folder / "a.png"), PictureError);
    EXPECT_EQ(bytesOf(folder / "a.png"), before);
    fs::create_symlink("a.png", folder / "link.png");
    Picture darker = sample();
    darker.bytes.assign(darker.bytes.size(), 0);
    writePNG(darker, folder / "link.png");
    EXPECT_TRUE(fs::is_symlink(folder / "link.png"));
    EXPECT_EQ(readPNG(folder / "a.png").bytes[0], 0);
    EXPECT_EQ(files(), 2u);
}

TEST_F(Pictures, sayWhyTheyCannotBeWrittenOrRead) {
    const std::string name = folder.string();
    EXPECT_EQ(messageOf([&] { writePNG(sample(), folder); }),
              name + " cannot be written: It is a folder.");
    EXPECT_EQ(messageOf([&] { readPNG(folder / "a.png"); }),
              name + "/a.png cannot be read: No such file or directory.");
    std::ofstream(folder / "text.png") << "no picture";
    EXPECT_NE(messageOf([&] { readPNG(folder / "text.png"); }), "");
    writePNG(sample(), folder / "cut.png");
    fs::resize_file(folder / "cut.png", 60);
    EXPECT_NE(messageOf([&] { readPNG(folder / "cut.png"); }), "");
}

// Read by another program than the writer's library.
TEST_F(Pictures, areJPEGsOfTheirColors) {
    Picture picture{.width = 40, .height = 24, .bytesPerRow = 168};
    picture.bytes.resize(168 * 24, 0xff);
    for (std::size_t pixel = 0; pixel < 40 * 24; ++pixel) {
        std::uint8_t* const color = &picture.bytes[pixel / 40 * 168 + pixel % 40 * 4];
        color[0] = 200, color[1] = 20, color[2] = pixel % 40 < 20 ? 120 : 30;
    }
    for (const int quality : {95, 75}) {
        const std::string jpeg = jpegOf(picture, quality);
        ASSERT_EQ(jpeg.substr(0, 3), "\xFF\xD8\xFF");
        std::ofstream(folder / "a.jpg", std::ios::binary) << jpeg;
        const std::string command = "ffmpeg -v error -y -i " + (folder / "a.jpg").string() + " " +
                                    (folder / "a.png").string();
        if (std::system(command.c_str()) != 0) // NOLINT: no word of it comes from outside
            GTEST_SKIP() << "There is no ffmpeg to read it with.";
        const Picture read = readPNG(folder / "a.png");
        ASSERT_EQ(read.width, 40u);
        ASSERT_EQ(read.height, 24u);
        for (const std::size_t column : {4u, 36u})
            for (std::size_t byte = 0; byte < 3; ++byte)
                EXPECT_NEAR(read.bytes[12 * read.bytesPerRow + column * 4 + byte],
                            picture.bytes[12 * 168 + column * 4 + byte], 4);
    }
    EXPECT_EQ(jpegOf({}, 90), "");
    EXPECT_EQ(jpegOf({.width = 70000,
                      .height = 1,
                      .bytesPerRow = 280000,
                      .bytes = std::vector<std::uint8_t>(280000)},
                     90),
              "");
}

TEST(HalvedPicture, takesTheMeanOfFourPixelsAndLeavesAnOddRestOut) {
    Picture picture{.width = 3, .height = 3, .bytesPerRow = 16, .bytes{}};
    for (std::uint8_t at = 0; at < 48; ++at)
        picture.bytes.push_back(at);
    const Picture half = halved(picture);
    EXPECT_EQ(half.width, 1u);
    EXPECT_EQ(half.height, 1u);
    // The mean of the bytes b, b + 4, b + 16 and b + 20.
    EXPECT_EQ(half.bytes, (std::vector<std::uint8_t>{10, 11, 12, 13}));
}
