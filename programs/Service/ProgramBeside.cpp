#include "programs/Service/ProgramBeside.h"

#include "programs/CommandLine/CommandError.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <string>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace tarnwick {

void becomeProgram(std::string_view name, std::span<const std::string> given,
                   std::string_view package) {
    std::error_code unread;
    const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", unread);
    const std::string host = (self.parent_path() / name).string();
    std::vector<std::string> words{host};
    words.insert(words.end(), given.begin(), given.end());
    std::vector<char*> pointers;
    for (std::string& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    execv(host.c_str(), pointers.data());
    const int error = errno;
    failure(host + " cannot be run: " + std::strerror(error) +
            (error == ENOENT ? ". It comes with " + std::string(package) + "." : "."));
}

void becomeSaver(std::span<const std::string> words) {
    becomeProgram("tarnwick-saver", words, "the saver");
}

void becomePlayer(std::span<const std::string> words) {
    becomeProgram("tarnwick-player", words, "the player");
}

} // namespace tarnwick
