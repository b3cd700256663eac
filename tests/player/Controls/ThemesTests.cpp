// The colours of the themes.
#include "player/Layout/Themes.h"

#include <gtest/gtest.h>

#include <QColor>
#include <algorithm>
#include <array>

namespace tarnwick::player {
namespace {

struct Text {
    QPalette::ColorGroup group;
    QPalette::ColorRole text, ground;
};

constexpr std::array normalTexts{
    Text{QPalette::Active, QPalette::WindowText, QPalette::Window},
    Text{QPalette::Active, QPalette::Text, QPalette::Base},
    Text{QPalette::Active, QPalette::Text, QPalette::AlternateBase},
    Text{QPalette::Active, QPalette::ButtonText, QPalette::Button},
    Text{QPalette::Active, QPalette::HighlightedText, QPalette::Highlight},
    Text{QPalette::Active, QPalette::ToolTipText, QPalette::ToolTipBase},
};
constexpr std::array dimTexts{
    Text{QPalette::Active, QPalette::PlaceholderText, QPalette::Base},
    Text{QPalette::Active, QPalette::PlaceholderText, QPalette::Window},
    Text{QPalette::Disabled, QPalette::WindowText, QPalette::Window},
    Text{QPalette::Disabled, QPalette::Text, QPalette::Base},
    Text{QPalette::Disabled, QPalette::ButtonText, QPalette::Button},
};

template <typename Texts> double leastContrast(const QPalette& palette, const Texts& texts) {
    double least = 21;
    for (const Text& one : texts)
        least = std::min(least, contrastRatio(palette.color(one.group, one.text),
                                              palette.color(one.group, one.ground)));
    return least;
}

// WCAG 2.1: 1.4.3 asks for 4.5 of text, 1.4.6 for 7; nothing is asked of disabled text.
TEST(Themes, haveTextThatIsRead) {
    EXPECT_GE(leastContrast(lightPalette(), normalTexts), 4.5);
    EXPECT_GE(leastContrast(darkPalette(), normalTexts), 4.5);
    EXPECT_GE(leastContrast(highContrastPalette(), normalTexts), 7);
    EXPECT_GE(leastContrast(lightPalette(), dimTexts), 3);
    EXPECT_GE(leastContrast(darkPalette(), dimTexts), 3);
    EXPECT_GE(leastContrast(highContrastPalette(), dimTexts), 7);
    EXPECT_FALSE(isDarkPalette(lightPalette()));
    EXPECT_TRUE(isDarkPalette(darkPalette()));
}

TEST(Themes, mendOnlyDimTextThatIsNotSeen) {
    EXPECT_EQ(withReadableDimText(darkPalette()), darkPalette());
    QPalette black(Qt::black, Qt::black);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        black.setColor(role, Qt::white);
        black.setColor(QPalette::Disabled, role, Qt::black);
    }
    black.setColor(QPalette::Base, Qt::black);
    black.setColor(QPalette::PlaceholderText, QColor(0, 0, 0, 128));
    EXPECT_GE(leastContrast(withReadableDimText(black), dimTexts), 3);
    EXPECT_NEAR(contrastRatio(Qt::black, Qt::white), 21, 1e-9);
}

} // namespace
} // namespace tarnwick::player
