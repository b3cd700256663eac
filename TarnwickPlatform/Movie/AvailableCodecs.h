// The encoders and decoders that the installed FFmpeg libraries have. Any thread.
#pragma once

#include <string>

namespace tarnwick {

// `name`: libavcodec's, "libx264".
bool hasEncoder(const std::string& name);
bool hasDecoder(const std::string& name);
std::string codecLibraryVersion(); // "libavcodec 59.37.100"

} // namespace tarnwick
