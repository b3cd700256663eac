// Names, types and layouts of the arguments of entry points, for hosts that want them.
#pragma once

#include "TarnwickMSL/Reflection.h"
#include "TarnwickMSL/Translation/FrontEnd/Entries.h"

#include <vector>

namespace tarnwick::msl {

// The entries must be complete (completeEntries).
Reflection reflect(const clang::ASTContext& context, const std::vector<Entry>& entries);

} // namespace tarnwick::msl
