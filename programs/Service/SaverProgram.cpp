#include "programs/Service/SaverProgram.h"

#include "programs/CommandLine/CommandError.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <string>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace tarnwick {

void becomeSaver(std::span<const std::string> given) {
    std::error_code error;
    const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", error);
    const std::string host = (self.parent_path() / "tarnwick-saver").string();
    std::vector<std::string> words{host};
    words.insert(words.end(), given.begin(), given.end());
    std::vector<char*> pointers;
    for (std::string& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    execv(host.c_str(), pointers.data());
    failure(host + " cannot be run: " + std::strerror(errno) + ".");
}

} // namespace tarnwick
