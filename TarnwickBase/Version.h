// Which release of the programs this is; the build sets it.
#pragma once

#include <string>
#include <string_view>

namespace tarnwick {

std::string_view programVersion(); // for people: "0.1.0"
std::string_view programBuild();   // what orders releases: "1"
std::string programName();         // "Tarnwick 0.1.0 (build 1)"

} // namespace tarnwick
