// What the writer makes of memory, run on the device beside the same done in bytes here.
#include "TarnwickMSL/Translation/SpirvWriter.h"
#include "tests/TarnwickMSL/KernelTest.h"
#include "tests/TarnwickMSL/SpirvModules.h"
#include "tests/Validation.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

namespace tarnwick::msl {

namespace {

using Words = std::vector<std::uint32_t>;

// A kernel of one thread: `code` finds words in @buffer.1 and stores some in @buffer.0.
class Values : public tests::KernelTest {
  protected:
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
        tests::Bytes given(input.size() * 4);
        std::memcpy(given.data(), input.data(), given.size());
        const auto after =
            KernelTest::run(*library, {.kernel = "shade"}, {tests::Bytes(results * 4), given});
        Words words(results);
        std::memcpy(words.data(), after[0].data(), results * 4);
        return words;
    }
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

// LLVM's expansion of an induction writes the offset of a member after the index into it.
TEST_F(Values, areOfTheMemberWhoseOffsetIsBehindTheIndex) {
    const Words results = run(R"(define void @main() {
  %local = alloca { <2 x i16>, [2 x <2 x i32>] }
  %x = load i32, ptr @buffer.1
  %index = and i32 %x, 1
  %bytes = shl i32 %index, 3
  %far = getelementptr i8, ptr %local, i32 %bytes
  %lane = getelementptr i8, ptr %far, i32 12
  store i32 5, ptr %lane
  %second = getelementptr i8, ptr %local, i32 20
  %b = load i32, ptr %second
  store i32 %b, ptr @buffer.0
  ret void
}
)",
                              "i32", InterfaceKind::storageBuffer, {1}, 1);
    EXPECT_EQ(results, Words{5});
}

} // namespace tarnwick::msl
