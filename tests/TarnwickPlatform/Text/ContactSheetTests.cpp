#include "TarnwickPlatform/Text/ContactSheet.h"

#include <gtest/gtest.h>

using namespace tarnwick;

namespace {

Picture plain(std::uint8_t grey) {
    return {.width = 40, .height = 20, .bytesPerRow = 160, .bytes = std::vector(3200, grey)};
}

std::uint8_t at(const Picture& sheet, std::size_t x, std::size_t y) {
    return sheet.bytes[y * sheet.bytesPerRow + x * 4];
}

} // namespace

TEST(ContactSheet, hasAPlaceAndALabelForEachPicture) {
    const std::vector<LabelledPicture> pictures{
        {plain(100), "a"}, {plain(150), ""}, {plain(200), ""}};
    const SheetLayout layout{.columns = 2, .pictureWidth = 40, .pictureHeight = 20, .count = 3};
    const Picture sheet = contactSheet(pictures, layout);
    EXPECT_EQ(sheet.width, 2u * 52 + 12);
    EXPECT_EQ(sheet.height, 2u * 58 + 12);
    const std::uint8_t ground = at(sheet, 0, 0);
    EXPECT_LT(ground, 64);
    for (const auto& [x, y, grey] :
         {std::tuple{12u, 12u, 100}, {51u, 31u, 100}, {64u, 12u, 150}, {12u, 70u, 200}})
        EXPECT_EQ(at(sheet, x, y), grey) << x << ", " << y;
    EXPECT_EQ(at(sheet, 52, 31), ground);
    // Something bright stands under the first picture, nothing under the second.
    std::uint8_t first = 0, second = 0;
    for (std::size_t y = 32; y < 58; ++y)
        for (std::size_t x = 0; x < 40; ++x) {
            first = std::max(first, at(sheet, 12 + x, y));
            second = std::max(second, at(sheet, 64 + x, y));
        }
    EXPECT_GT(first, 150);
    EXPECT_EQ(second, ground);
}
