#include "programs/Terminal/Colours.h"

#include <cstdlib>
#include <unistd.h>

namespace tarnwick {

static std::string_view variable(const char* name) {
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

Colours coloursOf(int descriptor) {
    const bool areShown =
        isatty(descriptor) == 1 && variable("NO_COLOR").empty() && variable("TERM") != "dumb";
    return areShown ? Colours::ofTerminal : Colours::none;
}

std::string styled(std::string_view text, std::string_view parameters, Colours colours) {
    if (colours == Colours::none || text.empty() || parameters.empty())
        return std::string(text);
    return "\033[" + std::string(parameters) + "m" + std::string(text) + "\033[0m";
}

} // namespace tarnwick
