// The layout of memory is Metal's: every type's size and alignment, where members and lanes stand,
// as the GPU writes them and the CPU reads their bytes.
#include "tests/TarnwickMSL/KernelTest.h"

#include <bit>
#include <cstring>

namespace tarnwick {

namespace {

using tests::Bytes;

class Layout : public tests::KernelTest {};

struct Element {
    const char* name;
    std::size_t bytes;
    char kind; // b, i, h, f
};
constexpr Element elements[] = {{"bool", 1, 'b'},  {"char", 1, 'i'},   {"uchar", 1, 'i'},
                                {"short", 2, 'i'}, {"ushort", 2, 'i'}, {"half", 2, 'h'},
                                {"int", 4, 'i'},   {"uint", 4, 'i'},   {"float", 4, 'f'},
                                {"long", 8, 'i'},  {"ulong", 8, 'i'}};

// A type, and the rule of Metal Shading Language 3.1, 2.1 to 2.3, for what it takes.
struct Type {
    std::string name;
    Element element;
    std::size_t lanes = 1, columns = 1;
    bool isPacked = false;

    std::size_t columnBytes() const {
        return (lanes == 3 && !isPacked ? 4 : lanes) * element.bytes;
    }
    std::size_t align() const { return isPacked ? element.bytes : columnBytes(); }
    std::size_t size() const { return columns * columnBytes(); }
    // Of a record with a byte before and one after: where the member stands, and the last byte.
    std::size_t offset() const { return std::max<std::size_t>(align(), 1); }
    std::size_t after() const { return offset() + size(); }
    std::size_t record() const { return (after() + align()) / align() * align(); }
};

std::vector<Type> typesOf(const Element& element) {
    const std::string name = element.name;
    std::vector<Type> all{{name, element}};
    for (std::size_t lanes : {2u, 3u, 4u}) {
        const std::string n = std::to_string(lanes);
        all.push_back({name + n, element, lanes});
        if (element.kind != 'b')
            all.push_back({"packed_" + name + n, element, lanes, 1, true});
        if (element.kind != 'h' && element.kind != 'f')
            continue;
        for (std::size_t columns : {2u, 3u, 4u})
            all.push_back({name + std::to_string(columns) + "x" + n, element, lanes, columns});
    }
    return all;
}

// The bytes of the small number that component `n` is given.
Bytes component(const Element& element, std::size_t n) {
    const std::uint64_t number = element.kind == 'b'   ? n % 2 == 0
                                 : element.kind == 'f' ? std::bit_cast<std::uint32_t>(float(n + 1))
                                 : element.kind == 'h' ? 0x3c00 + 64 * n // 1 + n / 16
                                                       : n + 1;
    Bytes bytes(element.bytes);
    std::memcpy(bytes.data(), &number, element.bytes);
    return bytes;
}

std::string given(const Type& type) {
    std::string list;
    for (std::size_t n = 0; n < type.columns * type.lanes; ++n) {
        const std::string one = type.element.kind == 'b' ? n % 2 == 0 ? "true" : "false"
                                : type.element.kind == 'h'
                                    ? "half(1 + " + std::to_string(n) + " / 16.0)"
                                    : std::to_string(n + 1);
        list += (n ? ", " : "") + one;
    }
    return type.name + "(" + list + ")";
}

constexpr std::size_t room = 160; // bytes for a record of each type

// Few stores: the CPU driver takes its time over each.
std::string program(const std::vector<Type>& types) {
    std::string records, code;
    for (std::size_t n = 0; n < types.size(); ++n) {
        const std::string record = "R" + std::to_string(n), type = types[n].name;
        records += "struct " + record + " { uchar before; " + type + " value; uchar after; };\n";
        code += "{ device " + record + "* r = (device " + record + "*)(bytes + " +
                std::to_string(n * room) + "); r->before = 0xee; r->value = " + given(types[n]) +
                "; r->after = 0xdd; sizes[" + std::to_string(n) + "] = uchar4(sizeof(" + type +
                "), alignof(" + type + "), sizeof(" + record +
                "), (device uchar*)&r->value - (device uchar*)r); }\n";
    }
    return records +
           "kernel void check(device uchar* bytes [[buffer(0)]], device uchar4* sizes "
           "[[buffer(1)]]) {\n" +
           code + "}\n";
}

void expectSizes(const Type& type, const unsigned char* sizes) {
    EXPECT_EQ(sizes[0], type.size()) << type.name;
    EXPECT_EQ(sizes[1], type.align()) << type.name;
    EXPECT_EQ(sizes[2], type.record()) << type.name;
    EXPECT_EQ(sizes[3], type.offset()) << type.name;
}

void expectBytes(const Type& type, const unsigned char* record) {
    EXPECT_EQ(record[0], 0xee) << type.name;
    EXPECT_EQ(record[type.after()], 0xdd) << type.name;
    for (std::size_t n = 0; n < type.columns * type.lanes; ++n) {
        const unsigned char* at = record + type.offset() + n / type.lanes * type.columnBytes() +
                                  n % type.lanes * type.element.bytes;
        EXPECT_EQ(Bytes(at, at + type.element.bytes), component(type.element, n))
            << type.name << ", component " << n;
    }
}

} // namespace

TEST_F(Layout, ofEveryTypeIsMetals) {
    for (const Element& element : elements) {
        const std::vector<Type> all = typesOf(element);
        const auto found =
            run(*compiled(program(all)), {}, {Bytes(all.size() * room), Bytes(all.size() * 4)});
        for (std::size_t n = 0; n < all.size(); ++n) {
            expectSizes(all[n], &found[1][n * 4]);
            expectBytes(all[n], &found[0][n * room]);
        }
    }
}

namespace {

// The same record in both languages.
enum class Mode : std::uint16_t { first = 1, second = 500 };
struct Inner {
    alignas(8) std::uint16_t halves[4];
    std::uint8_t byte;
};
struct Record {
    std::uint8_t flag;
    float numbers[3];
    std::uint8_t bytes[5];
    alignas(16) float triples[2][4];
    Inner inner[2];
    Mode mode;
    union {
        float real;
        std::uint8_t parts[4];
    } either;
    std::uint32_t low : 5, middle : 11, high : 16;
    struct alignas(16) {
        float value;
    } aligned;
    struct {
    } empty;
    std::uint8_t last;
};

constexpr const char* recordInMetal = R"(
enum class Mode : ushort { first = 1, second = 500 };
struct Inner { half3 halves; uchar byte; };
struct alignas(16) Aligned { float value; };
struct Empty {};
struct Record {
    bool flag; float numbers[3]; uchar bytes[5]; float3 triples[2]; Inner inner[2]; Mode mode;
    union { float real; uchar parts[4]; } either;
    uint low : 5, middle : 11, high : 16;
    Aligned aligned; Empty empty; bool last;
};
kernel void check(device Record* out [[buffer(0)]], device Record& copy [[buffer(1)]],
                  device uint* size [[buffer(2)]]) {
    Record r;
    r.flag = true;
    for (int i = 0; i < 3; i++) r.numbers[i] = i + 0.5;
    for (int i = 0; i < 5; i++) r.bytes[i] = i + 10;
    r.triples[0] = float3(1, 2, 3); r.triples[1] = float3(4, 5, 6);
    for (int i = 0; i < 2; i++) { r.inner[i].halves = half3(1, 2, i); r.inner[i].byte = 7 + i; }
    r.mode = Mode::second; r.either.real = 2.0; r.either.parts[0] = 9;
    r.low = 21; r.middle = 1000; r.high = 40000;
    r.aligned.value = 8.0; r.last = true;
    out[0] = r;
    copy = out[0];
    copy.middle = copy.middle + 1;
    copy.inner[out[0].low - 20].byte = 99;
    size[0] = sizeof(Record);
}
)";

void expectRecord(const Record& r, unsigned middle, unsigned byte) {
    EXPECT_EQ(r.flag, 1);
    EXPECT_EQ(r.numbers[2], 2.5f);
    EXPECT_EQ(r.bytes[4], 14);
    EXPECT_EQ(r.triples[0][2], 3.0f);
    EXPECT_EQ(r.triples[1][1], 5.0f);
    EXPECT_EQ(r.inner[0].halves[1], 0x4000);
    EXPECT_EQ(r.inner[1].halves[2], 0x3c00);
    EXPECT_EQ(r.inner[0].byte, 7);
    EXPECT_EQ(r.inner[1].byte, byte);
    EXPECT_EQ(r.mode, Mode::second);
    EXPECT_EQ(std::bit_cast<std::uint32_t>(r.either.real), 0x40000009u);
    EXPECT_EQ(r.low, 21u);
    EXPECT_EQ(r.middle, middle);
    EXPECT_EQ(r.high, 40000u);
    EXPECT_EQ(r.aligned.value, 8.0f);
    EXPECT_EQ(r.last, 1);
}

} // namespace

TEST_F(Layout, ofARecordOfEverythingIsThatOfTheHost) {
    const auto found =
        run(*compiled(recordInMetal), {}, {Bytes(sizeof(Record)), Bytes(sizeof(Record)), Bytes(4)});
    Record record;
    std::memcpy(&record, found[0].data(), sizeof record);
    expectRecord(record, 1000, 8);
    std::memcpy(&record, found[1].data(), sizeof record);
    expectRecord(record, 1001, 99);
    EXPECT_EQ(found[2][0] + 256u * found[2][1], sizeof(Record));
}

} // namespace tarnwick
