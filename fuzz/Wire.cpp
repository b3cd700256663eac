// What the compiler's worker and its host send each other. A program that takes over the worker may
// answer with any bytes.
#include "TarnwickMSL/Wire.h"

#include "fuzz/Input.h"
#include "fuzz/Law.h"

using namespace tarnwick;
using namespace tarnwick::fuzz;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view text = textOf(bytes, size);
    if (const auto request = msl::requestFrom(text))
        law(msl::toBytes(*request) == text, "a request has one form");
    if (const auto answer = msl::compilationFrom(text))
        law(msl::toBytes(*answer) == text, "an answer has one form");
    return 0;
}
