#include "TarnwickPlatform/Movie/AvailableCodecs.h"

extern "C" {
#include <libavcodec/avcodec.h>
}

namespace tarnwick {

bool hasEncoder(const std::string& name) {
    return avcodec_find_encoder_by_name(name.c_str()) != nullptr;
}

bool hasDecoder(const std::string& name) {
    return avcodec_find_decoder_by_name(name.c_str()) != nullptr;
}

std::string codecLibraryVersion() {
    const unsigned version = avcodec_version();
    return "libavcodec " + std::to_string(AV_VERSION_MAJOR(version)) + "." +
           std::to_string(AV_VERSION_MINOR(version)) + "." +
           std::to_string(AV_VERSION_MICRO(version));
}

} // namespace tarnwick
