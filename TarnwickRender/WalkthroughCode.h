// A line of code as a page shows it.
#pragma once

#include "TarnwickCore/Walkthrough.h"
#include "TarnwickPlatform/Text/Canvas.h"

namespace tarnwick {

// The line in the colours of its syntax, dimmed where it is not added, tabs as blanks up to the
// next fourth column. Its size, its width and its number of lines are for the caller to set. (The
// lines of a walkthrough hold no comment, so none needs those around it to be coloured right.)
TextBlock codeBlock(const WalkthroughLine& line);

// Of code without a colour of its own, and of what is said about it.
inline constexpr Ink plainInk{0.87, 0.89, 0.93, 1};

} // namespace tarnwick
