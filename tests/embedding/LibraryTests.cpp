#include "tests/embedding/Handles.h"

#include <sys/wait.h>

#include <array>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

extern "C" size_t wordsInC(const char* source);

namespace tarnwick::embedding {
namespace {

// The record of that index; its struct_size is 0 if there is none.
template <class Record, class Get, class... Indices> Record read(Get get, Indices... indices) {
    Record record{};
    record.struct_size = sizeof record;
    if (!get(indices..., &record))
        record.struct_size = 0;
    return record;
}

const std::string program = R"(#include <metal_stdlib>
using namespace metal;
struct Lamp { packed_float3 place; float power; };
struct Scene { float4x4 view; Lamp lamps[3]; half tone; };
struct Corner { float3 place [[attribute(0)]]; float2 uv [[attribute(2)]]; };
struct Seen { float4 position [[position]]; float2 uv; };
constant int layers [[function_constant(4)]];
vertex Seen corner(Corner in [[stage_in]], constant Scene& scene [[buffer(1)]]) {
    return {scene.view * float4(in.place + scene.lamps[2].place, 1), in.uv};
}
fragment float4 paint(Seen in [[stage_in]], texture2d<float> picture [[texture(3)]],
                      constant Scene& scene [[buffer(1)]]) {
    constexpr sampler smooth(filter::linear, address::repeat);
    return picture.sample(smooth, in.uv) * scene.lamps[0].power;
}
kernel void add(device float* sums [[buffer(0)]], const device float* parts [[buffer(1)]],
                texture2d<float, access::write> out [[texture(0)]],
                uint i [[thread_position_in_grid]]) {
    threadgroup float shared[64];
    shared[i % 64] = parts[i];
    threadgroup_barrier(mem_flags::mem_threadgroup);
    sums[i] = shared[63 - i % 64] * layers;
    out.write(float4(sums[i]), uint2(i, 0));
}
)";

TEST(CLibrary, reflectsWhatAProgramBinds) {
    const Compiler with = compiler();
    const Result result = compile(with, program, TARNWICK_MSL_DONE);
    const auto vertex =
        read<tarnwick_msl_entry_point>(tarnwick_msl_result_entry_point, result.get(), size_t{0});
    EXPECT_STREQ(vertex.name, "corner");
    EXPECT_EQ(vertex.stage, TARNWICK_MSL_VERTEX);
    ASSERT_GT(vertex.word_count, 5u);
    EXPECT_EQ(vertex.words[0], 0x07230203u);
    EXPECT_EQ(vertex.listing, nullptr);
    const auto uv = read<tarnwick_msl_attribute>(tarnwick_msl_result_attribute, result.get(),
                                                 size_t{0}, size_t{1});
    EXPECT_STREQ(uv.name, "uv");
    EXPECT_EQ(uv.index, 2u);
    EXPECT_EQ(uv.width, 2u);
    EXPECT_EQ(uv.scalar, TARNWICK_MSL_FLOAT);

    const auto scene = read<tarnwick_msl_argument>(tarnwick_msl_result_argument, result.get(),
                                                   size_t{1}, size_t{1});
    EXPECT_STREQ(scene.name, "scene");
    EXPECT_STREQ(scene.type, "Scene");
    EXPECT_EQ(scene.bytes, 128u);
    EXPECT_EQ(scene.access, TARNWICK_MSL_READ);
    EXPECT_TRUE(scene.is_constant && scene.is_reference);
    const auto picture = read<tarnwick_msl_argument>(tarnwick_msl_result_argument, result.get(),
                                                     size_t{1}, size_t{0});
    EXPECT_STREQ(picture.type, "texture2d<float>");
    EXPECT_EQ(picture.access, TARNWICK_MSL_SAMPLE);

    bool hasTexture = false, hasSampler = false;
    for (size_t i = 0;; ++i) {
        const auto binding =
            read<tarnwick_msl_binding>(tarnwick_msl_result_binding, result.get(), size_t{1}, i);
        if (!binding.struct_size)
            break;
        EXPECT_EQ(binding.binding, 32 + i);
        if (binding.kind == TARNWICK_MSL_SAMPLED_TEXTURE) {
            hasTexture = true;
            EXPECT_STREQ(binding.name, "picture");
            EXPECT_EQ(binding.index, 3u);
            EXPECT_EQ(binding.shape, TARNWICK_MSL_TEXTURE_2D);
        }
        if (binding.kind == TARNWICK_MSL_CONSTANT_SAMPLER) {
            hasSampler = true;
            const auto sampler =
                read<tarnwick_msl_sampler>(tarnwick_msl_result_sampler, result.get(), size_t{1}, i);
            EXPECT_EQ(sampler.mag_filter, 1u);
            EXPECT_EQ(sampler.address[0], 2u);
        }
    }
    EXPECT_TRUE(hasTexture && hasSampler);

    const auto kernel =
        read<tarnwick_msl_entry_point>(tarnwick_msl_result_entry_point, result.get(), size_t{2});
    EXPECT_EQ(kernel.threadgroup_bytes, 256u);
    const auto layers = read<tarnwick_msl_constant>(tarnwick_msl_result_constant, result.get(),
                                                    size_t{2}, size_t{0});
    EXPECT_STREQ(layers.name, "layers");
    EXPECT_EQ(layers.index, 4u);
    const auto out = read<tarnwick_msl_argument>(tarnwick_msl_result_argument, result.get(),
                                                 size_t{2}, size_t{2});
    EXPECT_EQ(out.access, TARNWICK_MSL_WRITE);
}

TEST(CLibrary, laysOutRecords) {
    const Compiler with = compiler();
    const Result result = compile(with, program, TARNWICK_MSL_DONE);
    const auto scene = read<tarnwick_msl_argument>(tarnwick_msl_result_argument, result.get(),
                                                   size_t{1}, size_t{1});
    const auto member = [&](size_t record, size_t index) {
        return read<tarnwick_msl_record_member>(tarnwick_msl_result_record_member, result.get(),
                                                record, index);
    };
    const auto view = member(scene.record, 0), lamps = member(scene.record, 1),
               tone = member(scene.record, 2);
    EXPECT_STREQ(view.type, "float4x4");
    EXPECT_EQ(view.columns, 4u);
    EXPECT_EQ(view.bytes, 64u);
    EXPECT_STREQ(lamps.type, "Lamp");
    EXPECT_EQ(lamps.offset, 64u);
    EXPECT_EQ(lamps.count, 3u);
    EXPECT_EQ(lamps.stride, 16u);
    EXPECT_STREQ(tone.type, "half");
    EXPECT_EQ(tone.offset, 112u);
    EXPECT_EQ(member(scene.record, 3).struct_size, 0u);
    EXPECT_STREQ(member(lamps.record, 0).type, "packed_float3");
    EXPECT_EQ(member(lamps.record, 1).offset, 12u);
    EXPECT_EQ(member(99, 0).struct_size, 0u);
}

TEST(CLibrary, givesErrorsAsDataWithTheirPlaces) {
    const Compiler with = compiler();
    const Options named = options();
    EXPECT_EQ(tarnwick_msl_options_set_name(named.get(), "mine \"1\".metal"), TARNWICK_MSL_DONE);
    const Result result =
        compile(with, "float f() {\n  return nowhere;\n}\n", TARNWICK_MSL_PROGRAM_INVALID, named);
    const auto error =
        read<tarnwick_msl_diagnostic>(tarnwick_msl_result_diagnostic, result.get(), size_t{0});
    EXPECT_EQ(error.severity, TARNWICK_MSL_ERROR);
    EXPECT_STREQ(error.file, "mine \"1\".metal");
    EXPECT_EQ(error.line, 2u);
    EXPECT_EQ(error.column, 10u);
    EXPECT_EQ(error.length, 7u);
    EXPECT_STREQ(error.message, "use of undeclared identifier 'nowhere'");
    EXPECT_EQ(
        read<tarnwick_msl_entry_point>(tarnwick_msl_result_entry_point, result.get(), size_t{0})
            .struct_size,
        0u);
    // Of the steps after the front end.
    const Result late = compile(with, "kernel void k(device float** p [[buffer(0)]]) { **p = 1; }",
                                TARNWICK_MSL_PROGRAM_INVALID);
    EXPECT_EQ(
        read<tarnwick_msl_diagnostic>(tarnwick_msl_result_diagnostic, late.get(), size_t{0}).line,
        1u);
}

TEST(CLibrary, takesEveryOption) {
    const Compiler with = compiler();
    const std::string text = "#if __METAL_VERSION__ != 240 || SIZE != 3\n#error options\n#endif\n"
                             "constant bool isRed [[function_constant(0)]];\n"
                             "constant float2 scale [[function_constant(1)]];\n"
                             "fragment float4 a() { return isRed ? scale.y : half(0); }\n"
                             "fragment float4 b() { return SIZE; }\n";
    compile(with, text, TARNWICK_MSL_PROGRAM_INVALID);
    const Options all = options();
    const int64_t yes = 1;
    const std::array<double, 2> scale{0.5, 1.5};
    EXPECT_EQ(tarnwick_msl_options_add_define(all.get(), "SIZE", "3"), TARNWICK_MSL_DONE);
    EXPECT_EQ(tarnwick_msl_options_set_language_version(all.get(), "metal2.4"), TARNWICK_MSL_DONE);
    EXPECT_EQ(tarnwick_msl_options_set_constant_integers(all.get(), "isRed", &yes, 1),
              TARNWICK_MSL_DONE);
    EXPECT_EQ(tarnwick_msl_options_set_constant_reals(all.get(), "scale", scale.data(), 2),
              TARNWICK_MSL_DONE);
    EXPECT_EQ(tarnwick_msl_options_add_entry_point(all.get(), "a"), TARNWICK_MSL_DONE);
    EXPECT_EQ(tarnwick_msl_options_set_listed(all.get(), 1), TARNWICK_MSL_DONE);
    EXPECT_EQ(tarnwick_msl_options_set_optimised(all.get(), 0), TARNWICK_MSL_DONE);
    EXPECT_EQ(tarnwick_msl_options_set_time_limit(all.get(), 20000), TARNWICK_MSL_DONE);
    const Result result = compile(with, text, TARNWICK_MSL_DONE, all);
    const auto entry =
        read<tarnwick_msl_entry_point>(tarnwick_msl_result_entry_point, result.get(), size_t{0});
    ASSERT_STREQ(entry.name, "a");
    EXPECT_NE(std::string(entry.listing).find("OpEntryPoint Fragment"), std::string::npos);
    EXPECT_EQ(read<tarnwick_msl_constant>(tarnwick_msl_result_constant, result.get(), size_t{0},
                                          size_t{0})
                  .struct_size,
              0u);
    EXPECT_EQ(
        read<tarnwick_msl_entry_point>(tarnwick_msl_result_entry_point, result.get(), size_t{1})
            .struct_size,
        0u);
    EXPECT_EQ(tarnwick_msl_options_add_entry_point(all.get(), "none"), TARNWICK_MSL_DONE);
    const Result missing = compile(with, text, TARNWICK_MSL_PROGRAM_INVALID, all);
    EXPECT_STREQ(
        read<tarnwick_msl_diagnostic>(tarnwick_msl_result_diagnostic, missing.get(), size_t{0})
            .message,
        "the program has no entry point 'none'");
}

TEST(CLibrary, refusesWhatTheTargetLacks) {
    const Compiler with = compiler();
    const std::string wide = "kernel void k(device metal::atomic_ulong* o [[buffer(0)]]) {"
                             " metal::atomic_max_explicit(o, 3ul, metal::memory_order_relaxed); }";
    compile(with, wide, TARNWICK_MSL_DONE);
    const Options narrow = options();
    EXPECT_EQ(tarnwick_msl_options_set_feature(narrow.get(), TARNWICK_MSL_INT64, 0),
              TARNWICK_MSL_DONE);
    const Result refused = compile(with, wide, TARNWICK_MSL_PROGRAM_INVALID, narrow);
    EXPECT_STREQ(
        read<tarnwick_msl_diagnostic>(tarnwick_msl_result_diagnostic, refused.get(), size_t{0})
            .message,
        "The function atomic_fetch_max of 64 bits needs 64-bit integers, which the device lacks.");
    const std::string address = "kernel void k(device float** p [[buffer(0)]]) { **p = 1; }";
    compile(with, address, TARNWICK_MSL_PROGRAM_INVALID);
    const Options trusted = options();
    EXPECT_EQ(tarnwick_msl_options_set_feature(trusted.get(), TARNWICK_MSL_ADDRESSES, 1),
              TARNWICK_MSL_DONE);
    compile(with, address, TARNWICK_MSL_DONE, trusted);
}

TEST(CLibrary, givesTheTextOfWgslWithItsOverrides) {
    const Compiler with = compiler();
    const Options wgsl = options();
    EXPECT_EQ(tarnwick_msl_options_set_language(wgsl.get(), TARNWICK_MSL_WGSL), TARNWICK_MSL_DONE);
    const std::string text =
        "#include <metal_stdlib>\nusing namespace metal;\n"
        "kernel void k(device float* o [[buffer(0)]], texture2d<float, access::write> t"
        " [[texture(0)]], uint i [[thread_index_in_simdgroup]]) {"
        " o[i] = 1; t.write(float4(1), uint2(i)); }";
    const Result result = compile(with, text, TARNWICK_MSL_DONE, wgsl);
    const char* given = tarnwick_msl_result_wgsl(result.get(), 0);
    ASSERT_NE(given, nullptr);
    EXPECT_NE(std::string(given).find("\n@compute @workgroup_size("), std::string::npos) << given;
    EXPECT_EQ(tarnwick_msl_result_wgsl(result.get(), 1), nullptr);
    uint32_t number = 0;
    EXPECT_TRUE(tarnwick_msl_result_override(result.get(), 0, 2, &number));
    EXPECT_EQ(number, 3u) << "the threads of a threadgroup along z";
    EXPECT_FALSE(tarnwick_msl_result_override(result.get(), 0, 3, &number));
    EXPECT_STREQ(tarnwick_msl_result_feature(result.get(), 0, 0), "subgroups");
    EXPECT_EQ(tarnwick_msl_result_feature(result.get(), 0, 1), nullptr);
    EXPECT_STREQ(tarnwick_msl_result_format(result.get(), 0, 1), "rgba32float");
    EXPECT_EQ(tarnwick_msl_result_format(result.get(), 0, 0), nullptr);
    const Result modules = compile(with, text, TARNWICK_MSL_DONE);
    EXPECT_EQ(tarnwick_msl_result_wgsl(modules.get(), 0), nullptr);
}

TEST(CLibrary, includesFilesOfItsFolders) {
    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("tarnwick-msl-" + std::to_string(getpid()));
    std::filesystem::create_directories(folder);
    std::ofstream(folder / "own.h") << "float own() { return 0.5; }\n";
    const std::string text = "#include \"own.h\"\nfragment float4 f() { return own(); }\n";
    const Compiler with = compiler();
    compile(with, text, TARNWICK_MSL_PROGRAM_INVALID);
    const Options reading = options();
    EXPECT_EQ(tarnwick_msl_options_add_include_folder(reading.get(), folder.c_str()),
              TARNWICK_MSL_DONE);
    const Result result = compile(with, text, TARNWICK_MSL_DONE, reading);
    EXPECT_STREQ(tarnwick_msl_result_file(result.get(), 0), (folder / "own.h").c_str());
    EXPECT_EQ(tarnwick_msl_result_file(result.get(), 1), nullptr);
    std::ofstream(folder / "own.h") << "float own() { return x; }\n";
    const Result broken = compile(with, text, TARNWICK_MSL_PROGRAM_INVALID, reading);
    const auto error =
        read<tarnwick_msl_diagnostic>(tarnwick_msl_result_diagnostic, broken.get(), size_t{0});
    EXPECT_EQ(error.file, folder / "own.h");
    EXPECT_EQ(error.column, 22u);
    std::filesystem::remove_all(folder);
}

// Twice as many threads as children.
TEST(CLibrary, compilesInSeveralThreads) {
    const Compiler with = compiler(2);
    const auto wordsOf = [&](int number) {
        const Result result = compile(with,
                                      "fragment float4 f" + std::to_string(number) +
                                          "() { return " + std::to_string(number) + "; }",
                                      TARNWICK_MSL_DONE);
        const auto entry = read<tarnwick_msl_entry_point>(tarnwick_msl_result_entry_point,
                                                          result.get(), size_t{0});
        return std::string(entry.name) + " " + std::to_string(entry.word_count);
    };
    std::array<std::vector<std::string>, 4> found;
    std::vector<std::thread> threads;
    for (size_t thread = 0; thread < found.size(); ++thread)
        threads.emplace_back([&, thread] {
            for (int i = 0; i < 8; ++i)
                found[thread].push_back(wordsOf(static_cast<int>(thread) * 8 + i));
        });
    for (std::thread& thread : threads)
        thread.join();
    for (size_t thread = 0; thread < found.size(); ++thread)
        for (size_t i = 0; i < 8; ++i)
            EXPECT_EQ(found[thread][i], wordsOf(static_cast<int>(thread * 8 + i)));
}

TEST(CLibrary, outlivesItsWorkers) {
    const Compiler none = compiler(1, "/nonexistent/worker");
    compile(none, "int x;", TARNWICK_MSL_COMPILER_FAILED);
    const Compiler other = compiler(1, "/bin/true"); // ends at once, as one of another build does
    compile(other, "constant int x = 1;", TARNWICK_MSL_COMPILER_FAILED);
    const Compiler with = compiler(1);
    const Options quick = options();
    EXPECT_EQ(tarnwick_msl_options_set_time_limit(quick.get(), 1), TARNWICK_MSL_DONE);
    const Result late = compile(with, program, TARNWICK_MSL_COMPILER_FAILED, quick);
    EXPECT_NE(
        std::string(tarnwick_msl_result_messages(late.get())).find("ran out of time (0.001 s)"),
        std::string::npos);
    compile(with, program, TARNWICK_MSL_DONE);
}

// A host may wait for any child of its own.
TEST(CLibrary, leavesNoChild) {
    {
        const Compiler with = compiler();
        compile(with, "constant int x = 1;", TARNWICK_MSL_DONE);
    }
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
}

TEST(CLibrary, refusesInvalidArguments) {
    EXPECT_EQ(tarnwick_msl_compiler_create(nullptr, nullptr), TARNWICK_MSL_ARGUMENT_INVALID);
    const Options some = options();
    tarnwick_msl_options* const o = some.get();
    const int64_t number = 1;
    EXPECT_EQ(tarnwick_msl_options_add_define(o, "2", "3"), TARNWICK_MSL_ARGUMENT_INVALID);
    EXPECT_EQ(tarnwick_msl_options_add_define(o, "A", "1\n2"), TARNWICK_MSL_ARGUMENT_INVALID);
    EXPECT_EQ(tarnwick_msl_options_add_define(nullptr, "A", "1"), TARNWICK_MSL_ARGUMENT_INVALID);
    EXPECT_EQ(tarnwick_msl_options_set_language(nullptr, TARNWICK_MSL_WGSL),
              TARNWICK_MSL_ARGUMENT_INVALID);
    EXPECT_EQ(tarnwick_msl_options_set_language_version(o, "metal9"),
              TARNWICK_MSL_ARGUMENT_INVALID);
    EXPECT_EQ(tarnwick_msl_options_set_constant_integers(o, "a", &number, 5),
              TARNWICK_MSL_ARGUMENT_INVALID);
    EXPECT_EQ(tarnwick_msl_options_set_feature(o, static_cast<tarnwick_msl_feature>(15), 1),
              TARNWICK_MSL_ARGUMENT_INVALID);
    EXPECT_EQ(tarnwick_msl_options_set_time_limit(o, 0), TARNWICK_MSL_ARGUMENT_INVALID);
    tarnwick_msl_result* result = nullptr;
    EXPECT_EQ(tarnwick_msl_compile(nullptr, o, "", 0, &result), TARNWICK_MSL_ARGUMENT_INVALID);
    EXPECT_EQ(result, nullptr);
    EXPECT_EQ(tarnwick_msl_result_messages(nullptr), nullptr);
    tarnwick_msl_options_destroy(nullptr);
}

// Of a caller that was built with an older header, and of one with a newer header.
TEST(CLibrary, fillsRecordsOfOtherReleases) {
    const Compiler with = compiler();
    const Result result = compile(with, program, TARNWICK_MSL_DONE);
    tarnwick_msl_record record{};
    record.bytes = 77;
    record.struct_size = offsetof(tarnwick_msl_record, bytes);
    EXPECT_TRUE(tarnwick_msl_result_record(result.get(), 0, &record));
    EXPECT_STREQ(record.name, "Scene");
    EXPECT_EQ(record.bytes, 77u);
    struct {
        tarnwick_msl_record record;
        uint64_t later = 5;
    } newer{};
    newer.record.struct_size = sizeof newer;
    EXPECT_TRUE(tarnwick_msl_result_record(result.get(), 0, &newer.record));
    EXPECT_EQ(newer.record.bytes, 128u);
    EXPECT_EQ(newer.later, 0u);
    record.struct_size = 0;
    EXPECT_FALSE(tarnwick_msl_result_record(result.get(), 0, &record));
}

TEST(CLibrary, isUsedFromC) {
    EXPECT_GT(wordsInC("fragment float4 f() { return 1; }"), 5u);
    EXPECT_EQ(wordsInC("fragment float4 f() { return x; }"), 0u);
    EXPECT_EQ(tarnwick_msl_version(), TARNWICK_MSL_VERSION);
}

} // namespace
} // namespace tarnwick::embedding
