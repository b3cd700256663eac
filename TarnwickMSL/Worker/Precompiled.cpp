#include "TarnwickMSL/Worker/Precompiled.h"

#include <fstream>
#include <iterator>

namespace tarnwick::msl {
namespace {

std::string readWhole(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace

// The file: the library's fingerprint in 16 digits, then what Clang wrote.
bool writePrecompiled(const std::filesystem::path& path) {
    const std::string bytes =
        StandardLibrary::fingerprint() + StandardLibrary::build().precompiled();
    std::filesystem::path fresh = path;
    fresh += ".new";
    {
        std::ofstream file(fresh, std::ios::binary);
        file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        if (!file.flush())
            return false;
    }
    std::error_code error;
    std::filesystem::rename(fresh, path, error);
    return !error;
}

StandardLibrary standardLibrary() {
    std::error_code error;
    const std::filesystem::path here =
        std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
    const std::string fingerprint = StandardLibrary::fingerprint();
    for (const char* place : {"metal.pch", "../share/tarnwick/metal.pch"}) {
        std::string bytes = readWhole(here / place);
        if (bytes.starts_with(fingerprint))
            return StandardLibrary::fromPrecompiled(bytes.substr(fingerprint.size()));
    }
    return StandardLibrary::build();
}

} // namespace tarnwick::msl
