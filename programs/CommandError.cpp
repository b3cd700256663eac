#include "programs/CommandError.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace tarnwick {

void misuse(const std::string& sentence) {
    throw CommandError(Status::misused, sentence);
}

void failure(const std::string& sentence) {
    throw CommandError(Status::failed, sentence);
}

std::string quoted(std::string_view text) {
    constexpr std::size_t longest = 80;
    std::string shown = "\"";
    for (const char character : text.substr(0, longest))
        shown +=
            static_cast<unsigned char>(character) < 0x20 || character == 0x7f ? '?' : character;
    return shown + (text.size() > longest ? "...\"" : "\"");
}

void print(std::string_view text) {
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() || std::fflush(stdout) != 0)
        failure(std::string("Standard output cannot be written: ") + std::strerror(errno) + ".");
}

} // namespace tarnwick
