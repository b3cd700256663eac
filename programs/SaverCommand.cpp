// tarnwick saver: the screen saver's own program, which lies beside this one.
#include "programs/Command.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <string>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace tarnwick {

static Status saver(const Arguments& arguments) {
    std::error_code error;
    const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", error);
    const std::string host = (self.parent_path() / "tarnwick-saver").string();
    std::vector<std::string> words{host};
    words.insert(words.end(), arguments.operands().begin(), arguments.operands().end());
    std::vector<char*> pointers;
    for (std::string& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    execv(host.c_str(), pointers.data());
    failure(host + " cannot be run: " + std::strerror(errno) + ".");
}

const Command saverCommand{.name = "saver",
                           .operands = "...",
                           .summary = "Shows the screen saver; tarnwick saver --help says how.",
                           .options = {},
                           .run = saver,
                           .passesWordsOn = true};

} // namespace tarnwick
