#include "TarnwickMSL/Compile.h"

namespace tarnwick::msl {

Compilation compile(std::string_view, const CompileOptions&) {
    return {
        .failed = true, .entryPoints = {}, .messages = "program_source:1:1: error: no compiler."};
}

void warmUp() {}

} // namespace tarnwick::msl
