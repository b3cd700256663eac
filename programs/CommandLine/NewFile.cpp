#include "programs/CommandLine/NewFile.h"

#include "programs/CommandLine/CommandError.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace tarnwick {

bool writeNewFile(const std::filesystem::path& path, std::string_view text) {
    std::FILE* const file = std::fopen(path.c_str(), "wbx"); // x: fails if it exists
    if (!file && errno == EEXIST)
        return false;
    const bool isWritten = file && std::fwrite(text.data(), 1, text.size(), file) == text.size();
    if (file && std::fclose(file) == 0 && isWritten)
        return true;
    const std::string why = std::strerror(errno);
    if (file)
        std::remove(path.c_str());
    failure(path.string() + " cannot be written: " + why + ".");
}

} // namespace tarnwick
