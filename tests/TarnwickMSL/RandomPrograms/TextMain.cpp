// Prints random programs: for the native compiler, or as Metal programs to look at.
#include "tests/TarnwickMSL/RandomPrograms/Metal.h"
#include "tests/TarnwickMSL/RandomPrograms/Native.h"

#include <cstdio>
#include <string_view>

int main(int count, char** arguments) {
    using namespace tarnwick::trials;
    const auto range = count == 3 ? seeds(arguments[2]) : std::nullopt;
    const std::string_view form = count == 3 ? arguments[1] : "";
    if (!range || (form != "native" && form != "metal")) {
        std::fputs("Use: random-programs-text native|metal FIRST..LAST\n", stderr);
        return 2;
    }
    if (form == "native")
        std::fputs(nativeSource(*range).c_str(), stdout);
    else
        for (std::uint64_t seed = range->first; seed <= range->last; seed++)
            std::fputs(metalSource(seed).c_str(), stdout);
    return 0;
}
