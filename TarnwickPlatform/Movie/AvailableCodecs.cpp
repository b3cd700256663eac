#include "TarnwickPlatform/Movie/AvailableCodecs.h"

#include "TarnwickPlatform/Libav/Libav.h"

namespace tarnwick {

bool hasEncoder(const std::string& name) {
    try {
        return libav().avcodec_find_encoder_by_name(name.c_str()) != nullptr;
    } catch (const LibavError&) {
        return false;
    }
}

bool hasDecoder(const std::string& name) {
    try {
        return libav().avcodec_find_decoder_by_name(name.c_str()) != nullptr;
    } catch (const LibavError&) {
        return false;
    }
}

std::string codecLibraryVersion() {
    try {
        const unsigned version = libav().avcodec_version();
        return "libavcodec " + std::to_string(AV_VERSION_MAJOR(version)) + "." +
               std::to_string(AV_VERSION_MINOR(version)) + "." +
               std::to_string(AV_VERSION_MICRO(version));
    } catch (const LibavError& error) {
        return error.what();
    }
}

} // namespace tarnwick
