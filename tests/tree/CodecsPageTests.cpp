#include "TarnwickPlatform/Codecs/VideoCodec.h"
#include "tests/tree/Tree.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tarnwick {
namespace {

std::string rowOfPage(const VideoCodecRow& row) {
    const bool isTwice = row.encoderKind == EncoderKind::alphaLayer;
    return "| `" + std::string(row.name) + "` | " + std::string(row.standard) + " | `" +
           std::string(endingOf(fileKind(row.fileType))) + "` | `" + std::string(row.tag) +
           "` | `" + pixelFormatRow(row.pixelFormat).libavName + "` | " + row.encoder +
           (isTwice ? ", twice" : "") + " | " + (row.isIntraOnly ? "fixed quality" : "average") +
           " | " + std::to_string(row.leastWidth) + " x " + std::to_string(row.leastHeight) + " |";
}

// A row that the page lacks is printed as it should be.
TEST(CodecsPage, hasTheRowOfEveryCodec) {
    std::vector<std::string> wanted, found;
    for (const VideoCodecRow& row : videoCodecRows)
        wanted.push_back(rowOfPage(row));
    bool isTable = false;
    for (const std::string& line : linesOf(std::filesystem::path(TREE_ROOT) / "docs/design.md")) {
        if (isTable && line.starts_with("| `"))
            found.push_back(line);
        isTable = line.starts_with("| codec |") || (isTable && line.starts_with("|"));
    }
    EXPECT_EQ(found, wanted);
}

} // namespace
} // namespace tarnwick
