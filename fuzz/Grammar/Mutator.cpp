// How libFuzzer changes programs for the target Compiler, and the sanitizers' options for it.
#include "fuzz/Grammar/Mutations.h"
#include "fuzz/Input.h"

#include <algorithm>

using namespace tarnwick::fuzz;

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* bytes, std::size_t size, std::size_t most);

// LLVM's libraries are built without the sanitizer, but share code of its headers with us that
// marks the memory of its arenas.
extern "C" const char* __asan_default_options() {
    return "allow_user_poisoning=0:quarantine_size_mb=32:detect_leaks=0";
}

namespace {

constexpr std::string_view targetLine = "// @target ";
constexpr std::string_view targetWords[] = {"isOptimised",
                                            "followsAddresses",
                                            "specialisesUniforms",
                                            "hasInt64",
                                            "hasInt16 hasInt8",
                                            "hasFloat16",
                                            "hasInt8",
                                            "keepsLogs",
                                            "addsFloatsInBuffers",
                                            "hasFloat16 hasInt8 hasInt16 hasInt64",
                                            "hasMeshFunctions"};

// The program for another target.
std::string retargeted(std::string_view text, Random& random) {
    if (text.starts_with(targetLine))
        return std::string(text.substr(std::min(text.size(), text.find('\n') + 1)));
    const std::string_view words = targetWords[random.below(std::size(targetWords))];
    return std::string(targetLine).append(words).append("\n").append(text);
}

std::size_t copied(const std::string& text, std::uint8_t* bytes, std::size_t most) {
    const std::size_t size = std::min(text.size(), most);
    std::copy_n(text.data(), size, bytes);
    return size;
}

} // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* bytes, std::size_t size,
                                               std::size_t most, unsigned seed) {
    Random random(seed);
    if (random.oneIn(24))
        return LLVMFuzzerMutate(bytes, size, most);
    const std::string text(textOf(bytes, size));
    return copied(random.oneIn(16) ? retargeted(text, random) : mutated(text, text, random), bytes,
                  most);
}

extern "C" std::size_t LLVMFuzzerCustomCrossOver(const std::uint8_t* first, std::size_t firstSize,
                                                 const std::uint8_t* second, std::size_t secondSize,
                                                 std::uint8_t* out, std::size_t most,
                                                 unsigned seed) {
    Random random(seed);
    const std::string_view text = textOf(first, firstSize), other = textOf(second, secondSize);
    const std::string result =
        random.oneIn(4) ? mutated(text, other, random) : crossed(text, other, random);
    return copied(result, out, most);
}
