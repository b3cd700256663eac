// What tarnwick --version prints.
#pragma once

#include <string>

namespace tarnwick {

// The release and the commit, the compiler's release, the devices: a line each. Blocks.
std::string programReport();

} // namespace tarnwick
