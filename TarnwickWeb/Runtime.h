// The scripts of pages: the player, which web/ has as modules, joined to one, and that of
// galleries.
#pragma once

#include <string_view>

namespace tarnwick {

// Defines the element <tarnwick-episode>; imports nothing.
std::string_view webRuntime();

// Plays the links of the class "episode" in their elements of the class "picture".
std::string_view webGalleryScript();

} // namespace tarnwick
