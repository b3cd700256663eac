// The text output of the compiler.
#include "TarnwickCore/Diagnostics.h"

#include "fuzz/Input.h"
#include "fuzz/Law.h"

using namespace tarnwick;
using namespace tarnwick::fuzz;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    for (const Diagnostic& one : DiagnosticParser::parse(textOf(bytes, size))) {
        law(one.line >= 0 && one.column >= 0, "a position is not negative");
        law(one.id().size() > one.message.size(), "the id of a diagnostic contains its message");
    }
    return 0;
}
