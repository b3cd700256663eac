// The hosts of the sharing service: configuration. For another service only these two lines change.
#pragma once

#include <string_view>

namespace tarnwick {

// Lower-case ASCII, without scheme and port.
inline constexpr std::string_view siteHost = "tarnweb.example"; // pages, shaders and the JSON API
inline constexpr std::string_view mediaHost = "media.tarnweb.example"; // the release document

} // namespace tarnwick
