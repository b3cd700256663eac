// The release of the programs, set by the build.
#pragma once

#include <string>
#include <string_view>

namespace tarnwick {

std::string_view programVersion(); // for people: "0.1.0"
std::string_view programBuild();   // a number that grows with each release: "1"
std::string_view programDate();    // of the release, as in ISO 8601: "2026-11-22"
std::string programName();         // "Tarnwick 0.1.0 (build 1)"

} // namespace tarnwick
