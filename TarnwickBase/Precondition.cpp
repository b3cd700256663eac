#include "TarnwickBase/Precondition.h"

#include <cstdio>
#include <cstdlib>

namespace tarnwick {

void precondition(bool condition, std::string_view why) {
    if (condition) [[likely]]
        return;
    std::fprintf(stderr, "A promise inside the program is broken: %.*s\n",
                 static_cast<int>(why.size()), why.data());
    std::abort();
}

} // namespace tarnwick
