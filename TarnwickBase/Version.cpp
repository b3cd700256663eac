#include "TarnwickBase/Version.h"

namespace tarnwick {

std::string_view programVersion() {
    return TARNWICK_VERSION;
}

std::string_view programBuild() {
    return TARNWICK_BUILD;
}

std::string_view programDate() {
    return TARNWICK_RELEASED;
}

std::string programName() {
    return "Tarnwick " + std::string(programVersion()) + " (build " + std::string(programBuild()) +
           ")";
}

} // namespace tarnwick
