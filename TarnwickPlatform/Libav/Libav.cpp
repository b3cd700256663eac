#include "TarnwickPlatform/Libav/Libav.h"

extern "C" {
#include <libavdevice/avdevice.h>
}

#include <array>
#include <dlfcn.h>
#include <string>

namespace tarnwick {

namespace {

[[noreturn]] void fail() {
    const char* words = dlerror();
    throw LibavError("The libraries that read and write films cannot be loaded: " +
                     std::string(words ? words : "the reason is not known") + ".");
}

// It stays loaded until the process ends.
void* library(const std::string& name, int version) {
    void* handle =
        dlopen((name + ".so." + std::to_string(version)).c_str(), RTLD_LAZY | RTLD_LOCAL);
    if (!handle)
        fail();
    return handle;
}

} // namespace

void* libavFunction(const char* name) {
    // Functions are looked for in what these load too: libavcodec, libavutil and libswresample.
    static const std::array<void*, 2> libraries{library("libavformat", LIBAVFORMAT_VERSION_MAJOR),
                                                library("libswscale", LIBSWSCALE_VERSION_MAJOR)};
    for (void* each : libraries)
        if (void* found = dlsym(each, name))
            return found;
    fail();
}

const LibavFunctions& libav() {
    static const LibavFunctions functions;
    return functions;
}

void registerLibavDevices() {
    libav();
    void* const devices = library("libavdevice", LIBAVDEVICE_VERSION_MAJOR);
    void* const found = dlsym(devices, "avdevice_register_all");
    if (!found)
        fail();
    reinterpret_cast<decltype(&avdevice_register_all)>(found)();
}

} // namespace tarnwick
