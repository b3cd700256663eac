// The player of pages, which web/ has as modules, joined to one module of JavaScript.
#pragma once

#include <string_view>

namespace tarnwick {

// Defines the element <tarnwick-episode>; imports nothing. The build writes Runtime.cpp.
std::string_view webRuntime();

} // namespace tarnwick
