#include "programs/Service/ProgramBeside.h"

#include "programs/CommandLine/CommandError.h"

#include <cerrno>
#include <cstring>
#include <string>
#include <unistd.h>
#include <vector>

namespace tarnwick {

void becomeProgram(InstalledFile program, std::span<const std::string> given,
                   std::string_view package) {
    const std::string host = installedFile(program).string();
    std::vector<std::string> words{host};
    words.insert(words.end(), given.begin(), given.end());
    std::vector<char*> pointers;
    for (std::string& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    execv(host.c_str(), pointers.data());
    const int error = errno;
    failure(host + " cannot be run: " + std::strerror(error) +
            (error == ENOENT ? ". It is in the package " + std::string(package) + "." : "."));
}

void becomeSaver(std::span<const std::string> words) {
    becomeProgram(InstalledFile::saver, words, "tarnwick");
}

void becomePlayer(std::span<const std::string> words) {
    becomeProgram(InstalledFile::player, words, "tarnwick-player");
}

} // namespace tarnwick
