// The compiler's text.
#include "TarnwickCore/Diagnostics.h"

#include "fuzz/Input.h"
#include "fuzz/Law.h"

using namespace tarnwick;
using namespace tarnwick::fuzz;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    for (const Diagnostic& one : DiagnosticParser::parse(textOf(bytes, size))) {
        law(one.line >= 0 && one.column >= 0, "a place is not negative");
        law(one.id().size() > one.message.size(), "a diagnostic's name holds its message");
    }
    return 0;
}
