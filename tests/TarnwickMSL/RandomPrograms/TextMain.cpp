// Prints random programs: for the native compiler, as whole Metal programs, or their shared text.
#include "tests/TarnwickMSL/RandomPrograms/Metal.h"
#include "tests/TarnwickMSL/RandomPrograms/Native.h"

#include <cstdio>
#include <string_view>

int main(int count, char** arguments) {
    using namespace tarnwick::trials;
    const auto range = count == 3 ? seeds(arguments[2]) : std::nullopt;
    const std::string_view form = count == 3 ? arguments[1] : "";
    if (!range || (form != "native" && form != "metal" && form != "shared")) {
        std::fputs("Use: random-programs-text native|metal|shared FIRST..LAST\n", stderr);
        return 2;
    }
    const std::vector<std::string> bodies = bodiesOf(*range);
    if (form == "native")
        std::fputs(nativeSource(bodies).c_str(), stdout);
    else
        for (const std::string& body : bodies)
            std::fputs((form == "metal" ? metalSource(body) : body).c_str(), stdout);
    return 0;
}
