// The code of a page, in the colours of its syntax.
#pragma once

#include "TarnwickCore/Walkthroughs/Walkthrough.h"
#include "TarnwickPlatform/Text/Canvas.h"

#include <vector>

namespace tarnwick {

// A block for each line of the page. Lines that are not added are dimmed, tabs become blanks up to
// the next fourth column, and the common indentation is removed. The caller sets sizes, widths and
// numbers of lines. A walkthrough's lines have no comments, so each line is coloured alone.
std::vector<TextBlock> codeBlocks(const WalkthroughPage& page);

// The colour of plain code and of captions.
inline constexpr Ink plainInk{0.87, 0.89, 0.93, 1};

} // namespace tarnwick
