// What kernels may do wrong without harm, and what the pipeline sets for them.
#include "tests/TarnwickMSL/KernelTest.h"

#include <cstring>

namespace tarnwick {

namespace {

using tests::Bytes;

class Kernels : public tests::KernelTest {
  protected:
    std::string refusal(const std::string& source) {
        try {
            pipeline(source);
        } catch (const gpu::DeviceError& error) {
            return error.what();
        }
        return "";
    }
};

std::uint32_t word(const Bytes& bytes, std::size_t n) {
    std::uint32_t word = 0;
    std::memcpy(&word, bytes.data() + n * 4, 4);
    return word;
}

// Statements that reach outside by `far`, which is a power of two that only the GPU knows.
constexpr const char* outside[] = {
    "list[far] = 7; sum += list[far];",
    "list[-far] = 7; sum += list[-far];",
    "list[far * 3 - 1] = list[far * 5];",
    "*(list + far) = 7; sum += *(list - far);",
    "records[far].three = 7; sum += records[-far].three.y;",
    "records[0].list[far] = 7; sum += records[0].list[far] + records[0].list[-far];",
    "records[far * 7].list[far] = records[far].list[-far];",
    "((device uchar*)list)[far] = 7; sum += ((device uchar*)list)[-far];",
    "((device half*)list)[far] = 7; sum += ((device half*)list)[-far];",
    "((device ulong*)list)[far] = 7; sum += ((device ulong*)list)[-far];",
    "((device float4*)list)[far] = 7; sum += ((device float4*)list)[-far].z;",
    "atomic_fetch_add_explicit((device atomic_uint*)list + far, 1, memory_order_relaxed);",
    "atomic_fetch_add_explicit((device atomic_float*)list - far, 1.0f, memory_order_relaxed);",
    "sum += read_only[far] + read_only[-far]; sum += fours[far].y;",
    "shared[far] = 7; sum += shared[-far] + shared[far]; shared[int(i) * far] = 1;",
    "atomic_fetch_add_explicit(counts + far, 1, memory_order_relaxed);",
    "local[far] = 7; local[-far] = 7; sum += local[far] + local[-far * 3];",
    "nested[far].list[far] = 7; sum += nested[-far].three[far & 3];",
    "thread float* p = local + 2; p[far] = 7; sum += p[-far];",
    "sum += table[far] + table[-far];",
};

std::string reaching(const std::string& statement, int shift) {
    return "struct Record { float3 three; float list[5]; };\n"
           "constant float table[3] = {1, 2, 3};\n"
           "kernel void check(device float* list [[buffer(0)]], device Record* records "
           "[[buffer(1)]], constant float* read_only [[buffer(2)]], constant float4* fours "
           "[[buffer(3)]], device float* out [[buffer(4)]], uint i [[thread_position_in_grid]]) {\n"
           "threadgroup float shared[16]; threadgroup atomic_uint counts[4];\n"
           "float local[5] = {0, 0, 0, 0, 0}; Record nested[3] = {};\n"
           "int far = int(read_only[0]) << " +
           std::to_string(shift) + "; float sum = 0;\n" + statement +
           "\nout[0] = 5; out[1] = sum; }\n";
}

} // namespace

// In Metal what happens is not defined; here it must be nothing that ends the process or reaches
// other memory. Past 32 bits a byte offset may come round into the same buffer.
TEST_F(Kernels, stayInsideTheirBuffersHoweverFarTheyReach) {
    const float one = 1;
    Bytes readOnly(64);
    std::memcpy(readOnly.data(), &one, 4);
    for (const char* statement : outside) {
        for (int shift : {8, 20, 27, 30}) {
            const auto after = run(*compiled(reaching(statement, shift)),
                                   {.grid = {8, 1, 1}, .threadgroup = {8, 1, 1}},
                                   {Bytes(64), Bytes(96), readOnly, readOnly, Bytes(64)});
            EXPECT_EQ(word(after[4], 0), 0x40a00000u) << statement << " " << shift;
            EXPECT_EQ(after[2], readOnly) << statement << " " << shift;
        }
    }
}

// A particle's update: 1.3 to 2.2 times as fast on the CPU driver as through words.
TEST_F(Kernels, copyRecordsMemberByMember) {
    const auto library = compiled(R"(
struct Spin { half angle; char turns; };
struct Particle { float2 at; packed_float3 way; half4 color; Spin spin; bool isAlive; float trail[4]; };
void move(thread Particle& p) { p.at.x += p.way.y; p.spin.turns++; p.trail[p.spin.turns & 3] = p.at.x; }
kernel void check(device Particle* list [[buffer(0)]], uint i [[thread_position_in_grid]]) {
    Particle p = list[i];
    move(p);
    list[i] = p;
})");
    const auto& words = library->newFunction("check")->entryPoint().words;
    int arrays = 0; // one for each way to see the buffer
    for (std::size_t at = 5; at < words.size(); at += std::max(1u, words[at] >> 16))
        arrays += (words[at] & 0xffff) == 29; // OpTypeRuntimeArray
    EXPECT_EQ(arrays, 1);
}

TEST_F(Kernels, takeAsMuchThreadgroupMemoryAsTheEncoderSays) {
    constexpr const char* source = R"(
kernel void check(device uint* out [[buffer(0)]], threadgroup uint* a [[threadgroup(0)]],
                  threadgroup ushort4* b [[threadgroup(1)]], uint i [[thread_index_in_threadgroup]]) {
    a[i] = i * 3; b[i] = ushort4(i);
    if (i == 0) { a[1 << 20] = 5; b[1 << 24] = 7; } // inside, at the end
    threadgroup_barrier(mem_flags::mem_threadgroup);
    out[i] = a[(i + 1) % 32] + b[(i + 2) % 32].w;
})";
    const auto library = compiled(source);
    for (std::size_t threads : {16u, 32u}) {
        const auto after = run(*library,
                               {.grid = {static_cast<std::uint32_t>(threads), 1, 1},
                                .threadgroup = {static_cast<std::uint32_t>(threads), 1, 1},
                                .lengths = {33 * 4, 33 * 8}},
                               {Bytes(128)});
        EXPECT_EQ(word(after[0], 3), 4u * 3 + 5);
    }
    const auto state = pipeline(source);
    auto commands = queue->commandBuffer();
    auto encoder = commands->computeCommandEncoder();
    encoder->setComputePipelineState(*state);
    encoder->setThreadgroupMemoryLength(1u << 30, 0);
    encoder->dispatchThreads({1, 1, 1}, {1, 1, 1});
    encoder->endEncoding();
    commands->commit();
    EXPECT_EQ(commands->status(), gpu::CommandBufferStatus::error);
}

TEST_F(Kernels, sayHowManyThreadsTheyTake) {
    EXPECT_EQ(pipeline("[[max_total_threads_per_threadgroup(48)]] kernel void check() {}")
                  ->maxTotalThreadsPerThreadgroup(),
              48u);
}

TEST_F(Kernels, thatNeedMoreThanTheDeviceHasAreRefusedInASentence) {
    const std::string text = refusal(R"(
kernel void check(device float* out [[buffer(0)]], uint i [[thread_position_in_grid]]) {
    threadgroup float big[5000000];
    big[i] = i;
    threadgroup_barrier(mem_flags::mem_threadgroup);
    out[i] = big[i + 1];
})");
    EXPECT_NE(text.find("bytes of threadgroup memory, and 20000000 are wanted."), std::string::npos)
        << text;
}

} // namespace tarnwick
