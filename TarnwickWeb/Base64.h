// The Base64 form of bytes (RFC 4648, 4), with padding.
#pragma once

#include <string>
#include <string_view>

namespace tarnwick {

std::string base64(std::string_view bytes);

} // namespace tarnwick
