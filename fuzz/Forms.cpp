// The compiler's forms as text (Passes/Forms/Text.h): read, written and read again.
#include "TarnwickMSL/Translation/Passes/Forms/Text.h"
#include "TarnwickMSL/Translation/TranslationError.h"
#include "fuzz/Input.h"
#include "fuzz/Law.h"

using namespace tarnwick;
using namespace tarnwick::fuzz;

extern "C" const char* __asan_default_options() { // as of the target Compiler
    return "allow_user_poisoning=0:quarantine_size_mb=32:detect_leaks=0";
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    std::string written;
    try {
        const msl::ReadWork read = msl::readWork(textOf(bytes, size));
        written = msl::text(*read.work);
    } catch (const msl::TextError&) {
        return 0;
    }
    try {
        const msl::ReadWork again = msl::readWork(written);
        law(msl::text(*again.work) == written, "a written form reads back equal");
    } catch (const msl::TextError& error) {
        law(false, error.what());
    }
    return 0;
}
