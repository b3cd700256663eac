#include "TarnwickMSL/Worker/Precompiled.h"

#include "TarnwickBase/InstalledFiles.h"

#include <fstream>

namespace tarnwick::msl {
namespace {

std::string readWhole(const std::filesystem::path& path) {
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(path, error);
    std::ifstream file(path, std::ios::binary);
    if (error || !file)
        return {};
    std::string bytes(size, '\0');
    file.read(bytes.data(), static_cast<std::streamsize>(size));
    return file ? bytes : std::string();
}

} // namespace

// The file is Clang's output and then the library's fingerprint, 16 digits.
bool writePrecompiled(const std::filesystem::path& path) {
    const std::string bytes =
        StandardLibrary::build().precompiled() + StandardLibrary::fingerprint();
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
    const std::string fingerprint = StandardLibrary::fingerprint();
    std::string bytes = readWhole(installedFile(InstalledFile::precompiledLibrary));
    if (!bytes.ends_with(fingerprint))
        return StandardLibrary::build();
    bytes.resize(bytes.size() - fingerprint.size());
    return StandardLibrary::fromPrecompiled(std::move(bytes));
}

} // namespace tarnwick::msl
