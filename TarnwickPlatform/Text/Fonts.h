// The fonts of the system.
#pragma once

#include <string>

namespace tarnwick {

struct SystemFonts {
    std::size_t families = 0; // 0: text cannot be drawn
    std::string used;         // the family in which text is drawn; empty without fonts
};

SystemFonts systemFonts();

} // namespace tarnwick
