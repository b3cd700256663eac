// The code of a page, in the colours of its syntax.
#pragma once

#include "TarnwickCore/Walkthroughs/Walkthrough.h"
#include "TarnwickPlatform/Text/Canvas.h"

#include <vector>

namespace tarnwick {

// A block for each of the page's lines: those that are not added dimmed, tabs as blanks up to the
// next fourth column, and without the indentation that all lines share. Sizes, widths and numbers
// of lines are for the caller to set. (A walkthrough's lines hold no comment, so none needs the
// lines around it to be coloured right.)
std::vector<TextBlock> codeBlocks(const WalkthroughPage& page);

// Of code without a colour of its own, and of what is said about it.
inline constexpr Ink plainInk{0.87, 0.89, 0.93, 1};

} // namespace tarnwick
