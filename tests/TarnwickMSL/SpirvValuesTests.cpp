// What the writer makes of memory and integers, run on the device beside the same done in bytes
// and bits here.
#include "TarnwickGPU/Commands.h"
#include "TarnwickGPU/Device.h"
#include "TarnwickMSL/Translation/SpirvWriter.h"
#include "tests/TarnwickMSL/SpirvModules.h"
#include "tests/Validation.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstring>
#include <functional>
#include <numeric>
#include <string>
#include <vector>

namespace tarnwick::msl {

namespace {

using Words = std::vector<std::uint32_t>;

// A kernel of one thread: `code` finds words in @buffer.1 and stores some in @buffer.0.
class Values : public testing::Test {
  protected:
    void SetUp() override {
        device = gpu::Device::systemDefault();
        if (!device)
            GTEST_SKIP() << "There is no Vulkan 1.3 device.";
        queue = device->newCommandQueue();
    }

    Words run(const std::string& code, const std::string& inputType, InterfaceKind inputKind,
              const Words& input, std::size_t results) {
        std::string text = "@buffer.0 = external global i32\n@buffer.1 = external global " +
                           inputType + "\n" + code;
        bool isUniform = inputKind == InterfaceKind::uniformBuffer;
        ParsedShader parsed = parseShader(
            {.code = text,
             .stage = Stage::kernel,
             .interface = {
                 {.kind = InterfaceKind::storageBuffer, .global = "buffer.0", .elementBytes = 4},
                 {.kind = inputKind,
                  .global = "buffer.1",
                  .index = 1,
                  .binding = 1,
                  .elementBytes = input.size() * 4,
                  .isReference = isUniform}}});
        std::vector<EntryPoint> entries;
        entries.push_back(writeSpirv(parsed.shader));
        auto library = device->newLibrary(std::move(entries));
        auto pipeline = device->newComputePipelineState(*library->newFunction("shade"));
        auto out = device->newBuffer(results * 4), in = device->newBuffer(input.size() * 4);
        std::memset(out->contents(), 0, results * 4);
        std::memcpy(in->contents(), input.data(), input.size() * 4);
        auto commands = queue->commandBuffer();
        auto encoder = commands->computeCommandEncoder();
        encoder->setComputePipelineState(*pipeline);
        encoder->setBuffer(*out, 0, 0);
        encoder->setBuffer(*in, 0, 1);
        encoder->dispatchThreads({1, 1, 1}, {1, 1, 1});
        encoder->endEncoding();
        commands->commit();
        commands->waitUntilCompleted();
        Words words(results);
        std::memcpy(words.data(), out->contents(), results * 4);
        return words;
    }

    std::shared_ptr<gpu::Device> device;
    std::unique_ptr<gpu::CommandQueue> queue;
};

struct Type {
    const char* scalar;
    unsigned bytes; // of the scalar
    unsigned lanes = 1;
    std::string name() const {
        return lanes == 1 ? scalar
                          : "<" + std::to_string(lanes) + " x " + std::string(scalar) + ">";
    }
};

constexpr Type types[] = {{"i8", 1},      {"i16", 2},      {"i32", 4},      {"i64", 8},
                          {"half", 2},    {"float", 4},    {"i8", 1, 4},    {"i16", 2, 3},
                          {"half", 2, 4}, {"float", 4, 2}, {"float", 4, 3}, {"i32", 4, 4}};

std::size_t stride(const Type& type) {
    return type.bytes * (type.lanes == 3 ? 4 : type.lanes);
}

// Code that loads values of every type at every offset of `bytes` bytes at %from and stores their
// bits, a word for each lane (two for 64 bits).
class Loads {
  public:
    explicit Loads(const std::vector<unsigned char>& bytes) : bytes_(bytes) {}
    void add(const Type& type, std::size_t offset, const std::string& pointer);
    std::string code;
    Words expected;

  private:
    std::string next() { return "%v" + std::to_string(number_++); }
    void store(const std::string& word);
    void storeLane(const Type& type, std::size_t offset, const std::string& value);

    const std::vector<unsigned char>& bytes_;
    unsigned number_ = 0;
};

void Loads::store(const std::string& word) {
    std::string at = next();
    code += at + " = getelementptr i32, ptr @buffer.0, i32 " + std::to_string(expected.size()) +
            "\nstore i32 " + word + ", ptr " + at + "\n";
}

void Loads::storeLane(const Type& type, std::size_t offset, const std::string& value) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &bytes_[offset], type.bytes);
    std::string integer = "i" + std::to_string(type.bytes * 8);
    std::string asInteger = value;
    if (std::string(type.scalar) != integer) {
        asInteger = next();
        code += asInteger + " = bitcast " + type.scalar + " " + value + " to " + integer + "\n";
    }
    for (unsigned half = 0; half < (type.bytes == 8 ? 2 : 1); ++half) {
        std::string word = asInteger;
        if (half) {
            std::string high = next();
            code += high + " = lshr i64 " + asInteger + ", 32\n";
            word = high;
        }
        if (type.bytes != 4) {
            std::string sized = next();
            code += sized + (type.bytes == 8 ? " = trunc " : " = zext ") + integer + " " + word +
                    " to i32\n";
            word = sized;
        }
        store(word);
        expected.push_back(static_cast<std::uint32_t>(bits >> (32 * half)));
    }
}

void Loads::add(const Type& type, std::size_t offset, const std::string& pointer) {
    std::string value = next();
    code += value + " = load " + type.name() + ", ptr " + pointer + "\n";
    for (unsigned lane = 0; lane < type.lanes; ++lane) {
        std::string one = value;
        if (type.lanes > 1) {
            one = next();
            code += one + " = extractelement " + type.name() + " " + value + ", i32 " +
                    std::to_string(lane) + "\n";
        }
        storeLane(type, offset + lane * type.bytes, one);
    }
}

std::vector<unsigned char> someBytes() {
    std::vector<unsigned char> bytes(64);
    for (std::size_t n = 0; n < bytes.size(); ++n) // finite as halves and floats
        bytes[n] = static_cast<unsigned char>((n * 41 + 7) % 120);
    return bytes;
}

Words asWords(const std::vector<unsigned char>& bytes) {
    Words words(bytes.size() / 4);
    std::memcpy(words.data(), bytes.data(), bytes.size());
    return words;
}

// The place of each value: a constant offset, or one that depends on what is known to be zero.
std::string pointerTo(std::string& code, const std::string& root, std::size_t offset,
                      const char* dynamic) {
    static unsigned number = 0;
    std::string at = "%p" + std::to_string(number++), moved = at + ".moved";
    code += at + " = getelementptr i8, ptr " + root + ", i32 " + std::to_string(offset) + "\n";
    if (!*dynamic)
        return at;
    code += moved + " = getelementptr " + dynamic + ", ptr " + at + ", i32 %zero\n";
    return moved;
}

constexpr const char* record = "{ <3 x float>, [4 x i32], half, i16, i32, { i8, i8, i16 }, float, "
                               "<4 x i8>, [2 x float], i32 }"; // 64 bytes

} // namespace

TEST_F(Values, ofEveryTypeAreLoadedFromABufferOfAnother) {
    std::vector<unsigned char> bytes = someBytes();
    for (InterfaceKind kind : {InterfaceKind::storageBuffer, InterfaceKind::uniformBuffer}) {
        for (const char* dynamic : {"", "i8", "i32", "<4 x float>"}) {
            Loads loads(bytes);
            loads.code = "define void @main() {\n%w = load i32, ptr @buffer.1\n"
                         "%zero = lshr i32 %w, 31\n";
            for (const Type& type : types)
                for (std::size_t offset = 0; offset + stride(type) <= bytes.size();
                     offset += stride(type) * (*dynamic ? 5 : 1))
                    loads.add(type, offset, pointerTo(loads.code, "@buffer.1", offset, dynamic));
            loads.code += "ret void\n}\n";
            EXPECT_EQ(run(loads.code, record, kind, asWords(bytes), loads.expected.size()),
                      loads.expected)
                << static_cast<int>(kind) << " " << dynamic;
        }
    }
}

// Stores of one type, loads of another: bytes go from the buffer into a local record.
TEST_F(Values, ofEveryTypePassThroughLocalMemory) {
    std::vector<unsigned char> bytes = someBytes();
    for (const char* local : {record, "[64 x i8]", "[16 x float]", "[4 x <4 x float>]"}) {
        for (const Type& type : types) {
            Loads loads(bytes);
            loads.code = "define void @main() {\n%local = alloca " + std::string(local) +
                         "\n%w = load i32, ptr @buffer.1\n%zero = lshr i32 %w, 31\n";
            for (std::size_t word = 0; word < 16; ++word) {
                std::string n = std::to_string(word), offset = std::to_string(word * 4);
                loads.code += "%f" + n + " = getelementptr i8, ptr @buffer.1, i32 " + offset +
                              "\n%t" + n + " = getelementptr i8, ptr %local, i32 " + offset +
                              "\n%c" + n + " = load float, ptr %f" + n + "\nstore float %c" + n +
                              ", ptr %t" + n + "\n";
            }
            for (std::size_t offset = 0; offset + stride(type) <= bytes.size();
                 offset += stride(type))
                loads.add(type, offset, pointerTo(loads.code, "%local", offset, ""));
            loads.code += "ret void\n}\n";
            EXPECT_EQ(run(loads.code, "i32", InterfaceKind::storageBuffer, asWords(bytes),
                          loads.expected.size()),
                      loads.expected)
                << local << " as " << type.name();
        }
    }
}

namespace {

// An operation on integers of `bits` bits, as LLVM spells it and as it is done here.
struct Operation {
    const char* name;
    unsigned operands;
    std::function<std::uint64_t(std::uint64_t a, std::uint64_t b, std::uint64_t c, unsigned bits)>
        reference;
};

__extension__ typedef __int128 Wide;

std::uint64_t low(std::uint64_t value, unsigned bits) {
    return bits == 64 ? value : value & ((1ull << bits) - 1);
}
std::int64_t asSigned(std::uint64_t value, unsigned bits) {
    return static_cast<std::int64_t>(value << (64 - bits)) >> (64 - bits);
}
std::uint64_t saturated(Wide value, Wide least, Wide greatest) {
    return static_cast<std::uint64_t>(std::clamp(value, least, greatest));
}
Wide greatestSigned(unsigned bits) {
    return (static_cast<Wide>(1) << (bits - 1)) - 1;
}

using Bits = std::uint64_t;
const Operation operations[] = {
    {"ctpop", 1, [](Bits a, Bits, Bits, unsigned) { return Bits(std::popcount(a)); }},
    {"ctlz", 1,
     [](Bits a, Bits, Bits, unsigned n) { return Bits(std::countl_zero(a)) - (64 - n); }},
    {"cttz", 1,
     [](Bits a, Bits, Bits, unsigned n) { return std::min<Bits>(Bits(std::countr_zero(a)), n); }},
    {"bitreverse", 1,
     [](Bits a, Bits, Bits, unsigned n) {
         Bits reversed = 0;
         for (unsigned bit = 0; bit < n; ++bit)
             reversed |= (a >> bit & 1) << (n - 1 - bit);
         return reversed;
     }},
    {"bswap", 1, [](Bits a, Bits, Bits, unsigned n) { return __builtin_bswap64(a) >> (64 - n); }},
    {"abs", 1, [](Bits a, Bits, Bits, unsigned n) { return asSigned(a, n) < 0 ? -a : a; }},
    {"fshl", 3,
     [](Bits a, Bits b, Bits c, unsigned n) { return c % n ? a << c % n | b >> (n - c % n) : a; }},
    {"fshr", 3,
     [](Bits a, Bits b, Bits c, unsigned n) { return c % n ? a << (n - c % n) | b >> c % n : b; }},
    {"uadd.sat", 2,
     [](Bits a, Bits b, Bits, unsigned n) {
         return saturated(static_cast<Wide>(a) + b, 0, low(~0ull, n));
     }},
    {"usub.sat", 2, [](Bits a, Bits b, Bits, unsigned) { return a < b ? 0 : a - b; }},
    {"sadd.sat", 2,
     [](Bits a, Bits b, Bits, unsigned n) {
         return saturated(static_cast<Wide>(asSigned(a, n)) + asSigned(b, n),
                          -greatestSigned(n) - 1, greatestSigned(n));
     }},
    {"ssub.sat", 2,
     [](Bits a, Bits b, Bits, unsigned n) {
         return saturated(static_cast<Wide>(asSigned(a, n)) - asSigned(b, n),
                          -greatestSigned(n) - 1, greatestSigned(n));
     }},
    {"smin", 2,
     [](Bits a, Bits b, Bits, unsigned n) { return asSigned(a, n) < asSigned(b, n) ? a : b; }},
    {"umax", 2, [](Bits a, Bits b, Bits, unsigned) { return std::max(a, b); }},
};

constexpr std::uint64_t samples[] = {
    0,      1,          2,          7,     0x7f,       0x80,       0xff,
    0x8000, 0xdeadbeef, 0x7fffffff, ~0ull, 1ull << 63, 0x80000000, 0x123456789abcdef0};

// Code that applies the operation to the three 64-bit numbers at the start of @buffer.1 in turn.
std::string codeFor(const Operation& operation, unsigned bits) {
    std::string type = "i" + std::to_string(bits), code = "define void @main() {\n", call;
    for (unsigned n = 0; n < 3; ++n) {
        std::string id = std::to_string(n);
        code += "%a" + id + " = getelementptr i64, ptr @buffer.1, i32 " + id + "\n%l" + id +
                " = load i64, ptr %a" + id + "\n%o" + id + " = " +
                (bits == 64 ? "or i64 %l" + id + ", 0" : "trunc i64 %l" + id + " to " + type) +
                "\n";
        if (n < operation.operands)
            call += (n ? ", " : "") + type + " %o" + id;
    }
    std::string name = operation.name;
    bool takesFlag = name == "ctlz" || name == "cttz" || name == "abs";
    std::string function = "@llvm." + name + "." + type;
    std::string flag = takesFlag ? ", i1 false" : "";
    code += "%r = call " + type + " " + function + "(" + call + flag +
            ")\n%e = " + (bits == 64 ? "or i64 %r, 0" : "zext " + type + " %r to i64") +
            "\nstore i64 %e, ptr @buffer.0\nret void\n}\ndeclare " + type + " " + function + "(";
    for (unsigned n = 0; n < operation.operands; ++n)
        code += (n ? ", " : "") + type;
    return code + (takesFlag ? ", i1)\n" : ")\n");
}

} // namespace

TEST_F(Values, ofIntegerIntrinsicsAreRightInEveryWidth) {
    for (const Operation& operation : operations) {
        for (unsigned bits : {8u, 16u, 32u, 64u}) {
            if (bits == 8 && std::string(operation.name) == "bswap")
                continue; // there is none
            std::string code = codeFor(operation, bits);
            for (std::size_t n = 0; n < std::size(samples); n += bits == 32 ? 1 : 4) {
                std::uint64_t given[3]{};
                for (std::size_t operand = 0; operand < 3; ++operand)
                    given[operand] =
                        samples[(n * (operand + 1) + operand * 3) % std::size(samples)];
                Words input(6);
                std::memcpy(input.data(), given, sizeof given);
                Words result = run(code, "i64", InterfaceKind::storageBuffer, input, 2);
                std::uint64_t value = result[0] | static_cast<std::uint64_t>(result[1]) << 32;
                std::uint64_t expected =
                    low(operation.reference(low(given[0], bits), low(given[1], bits),
                                            low(given[2], bits), bits),
                        bits);
                EXPECT_EQ(value, expected) << operation.name << " i" << bits << " of " << given[0]
                                           << ", " << given[1] << ", " << given[2];
            }
        }
    }
}

TEST_F(Values, ofAThreadgroupsMemoryAndAtomicsAreShared) {
    auto library = device->newLibrary(R"(
#include <metal_stdlib>
using namespace metal;
kernel void sum(device float* sums [[buffer(0)]], device atomic_uint* total [[buffer(1)]],
                device atomic_int* ends [[buffer(2)]], uint i [[thread_position_in_grid]],
                uint t [[thread_index_in_threadgroup]],
                uint g [[threadgroup_position_in_grid]]) {
    threadgroup float shared[64];
    threadgroup atomic_uint count;
    if (t == 0)
        atomic_store_explicit(&count, 0, memory_order_relaxed);
    shared[t] = float(i);
    threadgroup_barrier(mem_flags::mem_threadgroup);
    for (uint step = 32; step > 0; step /= 2) {
        if (t < step)
            shared[t] += shared[t + step];
        threadgroup_barrier(mem_flags::mem_threadgroup);
    }
    atomic_fetch_add_explicit(&count, 2u, memory_order_relaxed);
    atomic_fetch_add_explicit(total, i, memory_order_relaxed);
    atomic_fetch_max_explicit(ends, int(i) - 5, memory_order_relaxed);
    atomic_fetch_min_explicit(ends + 1, -int(i), memory_order_relaxed);
    threadgroup_barrier(mem_flags::mem_threadgroup);
    if (t == 0)
        sums[g] = shared[0] + float(atomic_load_explicit(&count, memory_order_relaxed)) * 65536.0;
}
)");
    auto pipeline = device->newComputePipelineState(*library->newFunction("sum"));
    std::array<std::unique_ptr<gpu::Buffer>, 3> buffers;
    auto commands = queue->commandBuffer();
    auto encoder = commands->computeCommandEncoder();
    encoder->setComputePipelineState(*pipeline);
    for (std::uint32_t n = 0; n < 3; ++n) {
        buffers[n] = device->newBuffer(16);
        std::memset(buffers[n]->contents(), 0, 16);
        encoder->setBuffer(*buffers[n], 0, n);
    }
    encoder->dispatchThreads({192, 1, 1}, {64, 1, 1});
    encoder->endEncoding();
    commands->commit();
    commands->waitUntilCompleted();
    auto* sums = static_cast<const float*>(buffers[0]->contents());
    auto* ends = static_cast<const std::int32_t*>(buffers[2]->contents());
    for (int group = 0; group < 3; ++group) // 64 numbers from 64 * group on; each counts 2
        EXPECT_EQ(sums[group], static_cast<float>(2016 + 4096 * group + 128 * 65536));
    EXPECT_EQ(*static_cast<const std::uint32_t*>(buffers[1]->contents()), 192u * 191 / 2);
    EXPECT_EQ(ends[0], 186);
    EXPECT_EQ(ends[1], -191);
}

} // namespace tarnwick::msl
