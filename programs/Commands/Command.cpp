#include "programs/Commands/Command.h"

#include <algorithm>

namespace tarnwick {

const Command* commandIn(std::span<const Command* const> commands,
                         std::span<const char* const> words, std::size_t& wordCount) {
    std::string name;
    const Command* found = nullptr;
    for (std::size_t count = 1; count <= std::min<std::size_t>(2, words.size()); ++count) {
        name += (count > 1 ? " " : "") + std::string(words[count - 1]);
        const auto command = std::ranges::find(commands, name, &Command::name);
        if (command == commands.end())
            continue;
        found = *command;
        wordCount = count;
    }
    return found;
}

} // namespace tarnwick
