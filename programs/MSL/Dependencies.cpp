#include "programs/MSL/Dependencies.h"

namespace tarnwick {
namespace {

std::string escaped(std::string_view name) {
    std::string text;
    for (std::size_t at = 0; at < name.size(); ++at) {
        const char character = name[at];
        if (character == ' ' || character == '\t' || character == '#') {
            // make halves the backslashes before these.
            for (std::size_t back = at; back > 0 && name[back - 1] == '\\'; --back)
                text += '\\';
            text += '\\';
        }
        text += character == '$' ? "$$" : std::string(1, character);
    }
    return text;
}

} // namespace

std::string dependencyRule(std::string_view target, std::string_view source,
                           const std::vector<std::string>& files) {
    std::string rule = escaped(target) + ": " + escaped(source);
    std::string empty;
    for (const std::string& file : files) {
        rule += " \\\n  " + escaped(file);
        empty += "\n" + escaped(file) + ":\n";
    }
    return rule + "\n" + empty;
}

} // namespace tarnwick
