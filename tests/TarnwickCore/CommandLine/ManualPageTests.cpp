#include "TarnwickCore/CommandLine/ManualPage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarnwick {
namespace {

using testing::HasSubstr;
using testing::Not;

TEST(ManualPage, printsTextThatRoffWouldReadAsRequests) {
    const std::string text = roffOf(
        {.name = "draw",
         .command = "draw",
         .release = "Draw 1.0",
         .date = "2026-11-22",
         .form = {.operands = "FILE"},
         .summary = "Draws. It has two sentences.",
         .sections = {{.title = "FILES", .rows = {{".drawrc", "'a' \\ b, a-b, ~ and ^."}}}}});
    EXPECT_THAT(text, HasSubstr("draw \\- draws\n"));
    EXPECT_THAT(text,
                HasSubstr("\\fB\\&.drawrc\\fR\n\\&\\(aqa\\(aq \\e b, a\\-b, \\(ti and \\(ha.\n"));
    EXPECT_THAT(text, HasSubstr("\\fB\\-\\-help\\fR"));
    EXPECT_THAT(text, Not(HasSubstr("SEE ALSO")));
}

} // namespace
} // namespace tarnwick
