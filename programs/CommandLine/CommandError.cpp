#include "programs/CommandLine/CommandError.h"

#include "TarnwickCore/Text/TerminalText.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <unistd.h>

namespace tarnwick {

void misuse(const std::string& sentence) {
    throw CommandError(Status::misused, sentence);
}

void failure(const std::string& sentence) {
    throw CommandError(Status::failed, sentence);
}

void tell(std::string_view sentence) {
    std::fputs(("tarnwick: " + terminalText(sentence) + "\n").c_str(), stderr);
}

void print(std::string_view text) {
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() || std::fflush(stdout) != 0)
        failure(std::string("Standard output cannot be written: ") + std::strerror(errno) + ".");
}

void printForeign(std::string_view text) {
    print(isatty(STDOUT_FILENO) == 1 ? terminalLines(text) : std::string(text));
}

} // namespace tarnwick
