#include "programs/CommandLine/CommandError.h"

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

void print(std::string_view text) {
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() || std::fflush(stdout) != 0)
        failure(std::string("Standard output cannot be written: ") + std::strerror(errno) + ".");
}

} // namespace tarnwick
