// The C library without memory. This file replaces operator new of the whole process, also for the
// shared library; the other tests do not notice.
#include "tests/embedding/Handles.h"

#include <array>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <new>
#include <string>

namespace {

// Allocations that this thread may still make; negative: all.
thread_local long allocationsLeft = -1;

} // namespace

void* operator new(std::size_t size) {
    if (allocationsLeft == 0)
        throw std::bad_alloc();
    if (allocationsLeft > 0)
        --allocationsLeft;
    if (void* const memory = std::malloc(size == 0 ? 1 : size))
        return memory;
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace tarnwick::embedding {
namespace {

// Calls the function while only so many allocations succeed.
template <class Function> tarnwick_msl_status with(long allocations, Function function) {
    allocationsLeft = allocations;
    const tarnwick_msl_status status = function();
    allocationsLeft = -1;
    return status;
}

// Calls the function with 0, 1, 2 ... allocations until it has enough, and `look` after each call
// that had not. The number of these calls.
template <class Function, class Look> long callsWithout(Function function, Look look) {
    constexpr long most = 1000;
    for (long allocations = 0; allocations < most; ++allocations) {
        const tarnwick_msl_status status = with(allocations, function);
        if (status == TARNWICK_MSL_DONE)
            return allocations;
        EXPECT_EQ(status, TARNWICK_MSL_OUT_OF_MEMORY) << allocations;
        look();
    }
    ADD_FAILURE() << "There are " << most << " allocations in one call.";
    return most;
}

auto openFiles() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

const std::string longName = "a_name_that_no_string_keeps_in_itself";

TEST(CLibraryWithoutMemory, makesNoCompilerAndNoOptions) {
    tarnwick_msl_compiler* compiler = nullptr;
    EXPECT_GT(callsWithout([&] { return tarnwick_msl_compiler_create(nullptr, &compiler); },
                           [&] { EXPECT_EQ(compiler, nullptr); }),
              0);
    const Compiler owned(compiler);
    tarnwick_msl_options* options = nullptr;
    EXPECT_GT(callsWithout([&] { return tarnwick_msl_options_create(&options); },
                           [&] { EXPECT_EQ(options, nullptr); }),
              0);
    const Options ownedToo(options);
}

TEST(CLibraryWithoutMemory, changesNoOption) {
    const Options some = options();
    // Sets other options, to count the allocations, and then these with each smaller number.
    const auto failsOn = [&](auto set) {
        const Options other = options();
        const long needed = callsWithout([&] { return set(other.get()); }, [] {});
        EXPECT_GT(needed, 0);
        for (long allocations = 0; allocations < needed; ++allocations)
            EXPECT_EQ(with(allocations, [&] { return set(some.get()); }),
                      TARNWICK_MSL_OUT_OF_MEMORY);
    };
    const char* const name = longName.c_str();
    failsOn([&](auto* o) { return tarnwick_msl_options_add_define(o, name, "1"); });
    failsOn([&](auto* o) { return tarnwick_msl_options_add_entry_point(o, name); });
    failsOn([&](auto* o) { return tarnwick_msl_options_set_name(o, name); });
    failsOn([&](auto* o) { return tarnwick_msl_options_add_include_folder(o, "/"); });
    failsOn([&](auto* o) {
        return tarnwick_msl_options_set_constant_integers(
            o, name, std::array<int64_t, 4>{1, 2, 3, 4}.data(), 4);
    });
    const Compiler compiler = embedding::compiler(1);
    const Result result = compile(compiler,
                                  "#if defined(" + longName +
                                      ") || __has_include(\"/etc/passwd\")\n#error changed\n"
                                      "#endif\n#warning here\nfragment float4 f() { return 1; }",
                                  TARNWICK_MSL_DONE, some);
    EXPECT_EQ(std::string(tarnwick_msl_result_messages(result.get())).rfind("program_source:4", 0),
              0u);
}

// Wherever a compilation runs out of memory: before its request, on the way, in its answer.
TEST(CLibraryWithoutMemory, compilesAgainOnceThereIsMemory) {
    const std::string program = "fragment float4 " + longName + "() { return 1; }";
    const Compiler compiler = embedding::compiler(1);
    compile(compiler, program, TARNWICK_MSL_DONE);
    const auto files = openFiles();
    tarnwick_msl_result* result = nullptr;
    callsWithout(
        [&] {
            return tarnwick_msl_compile(compiler.get(), nullptr, program.data(), program.size(),
                                        &result);
        },
        [&] { EXPECT_EQ(result, nullptr); });
    const Result made(result);
    EXPECT_EQ(openFiles(), files);
    tarnwick_msl_entry_point entry{};
    entry.struct_size = sizeof entry;
    ASSERT_TRUE(tarnwick_msl_result_entry_point(made.get(), 0, &entry));
    EXPECT_STREQ(entry.name, longName.c_str());
}

} // namespace
} // namespace tarnwick::embedding
