// The modules of web/live, joined.
#pragma once

#include <string_view>

namespace tarnwick {

// JavaScript that follows webRuntime() in the same module. The build writes LiveModules.cpp.
std::string_view liveModules();

} // namespace tarnwick
