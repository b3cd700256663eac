#include "programs/CommandLine/Seconds.h"

#include "TarnwickCore/Text/Numbers.h"
#include "programs/CommandLine/CommandError.h"

#include <cmath>

namespace tarnwick {

double secondsFromZero(std::string_view given, std::string_view option) {
    const std::optional<double> seconds = doubleOf(given);
    if (!seconds || !std::isfinite(static_cast<float>(*seconds)) || *seconds < 0)
        misuse(std::string(option) + " wants a number of seconds from 0 on, not " + quoted(given) +
               ".");
    return *seconds;
}

double secondsFromZero(const Arguments& arguments, std::string_view option, double otherwise) {
    const auto given = arguments.value(option);
    return given ? secondsFromZero(*given, option) : otherwise;
}

} // namespace tarnwick
