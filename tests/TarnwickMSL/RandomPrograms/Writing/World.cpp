// Memory and textures that a program is given: its own piece of device memory as a record and an
// array, words in constant memory, textures with known texels, and one that is written.
#include "tests/TarnwickMSL/RandomPrograms/Writing/Generator.h"

#include <array>

namespace tarnwick::trials {

namespace {

constexpr std::uint32_t memoryOfArray = 128; // in 16 bytes, behind the record
constexpr std::uint32_t constantSpan = 24;

} // namespace

void Generator::samplers() {
    static constexpr std::array<const char*, 4> outside{"clamp_to_edge", "clamp_to_zero", "repeat",
                                                        "mirrored_repeat"};
    for (const bool isPixel : {false, true}) {
        const std::string name = fresh("sampler");
        line("constexpr sampler " + name + "(coord::" + (isPixel ? "pixel" : "normalized") +
             ", address::" + outside[below(isPixel ? 2 : 4)] +
             ", filter::nearest, mip_filter::nearest);");
        samplers_.push_back({name, isPixel});
    }
}

// Names the memory of this invocation.
void Generator::enterWorld() {
    scope_.hasWorld = true;
    if (!shapes_.empty()) {
        const Record record{
            .name = fresh("m"), .shape = shapes_.size() - 1, .space = Space::device};
        const std::string name = shapes_[record.shape].name;
        line("static_assert(sizeof(" + name + ") <= 2048, \"The array is behind it.\");");
        line("device " + name + "& " + record.name + " = *(device " + name + "*)world.memory;");
        declareMembers(record, true);
        scope_.shaped.push_back(record);
    }
    const Type type = anyType();
    const Array array{.name = fresh("d"),
                      .type = type,
                      .length = 2 + below(16),
                      .isPointer = true,
                      .space = Space::device};
    const std::string of = "device " + typeName(type) + "*";
    line(of + " " + array.name + " = (" + of + ")(world.memory + " + std::to_string(memoryOfArray) +
         ");");
    scope_.arrays.push_back(array);
    const std::string words = fresh("w");
    line("constant uint* " + words + " = world.words + (input & 127u);");
    scope_.arrays.push_back({.name = words,
                             .length = constantSpan,
                             .writable = false,
                             .isPointer = true,
                             .space = Space::constant});
}

// The centre of a texel, or of one outside.
std::string Generator::coordinate(std::uint32_t size, bool isPixel) {
    const std::string centre = "(float(int(" + leaf(Kind::unsigned_).text + " & 31u) - 8) + 0.5f)";
    return isPixel ? centre : centre + " / " + std::to_string(size) + ".0f";
}

// Whether a texture has texels of that kind.
bool Generator::hasTexels(Kind kind) const {
    return scope_.hasWorld && (kind == Kind::unsigned_ || isReal(kind) || kind == Kind::signed_ ||
                               kind == Kind::ushort_);
}

// Four components of a texel, read or sampled.
std::string Generator::texel(Kind kind) {
    const auto [by, isPixel] = any(samplers_);
    const auto at = [&](std::uint32_t size) { return coordinate(size, isPixel); };
    const std::string sample = "sample(" + by + ", ";
    const bool isRead = chance(50);
    switch (kind) {
    case Kind::unsigned_:
        if (chance(40))
            return "world.board.read(world.place)";
        return "world.line." + (isRead ? "read(" + index(16) : sample + coordinate(16, isPixel)) +
               ")";
    case Kind::float_: {
        const std::uint32_t level = below(3), width = 8 >> level, height = 4 >> level;
        const std::string number = std::to_string(level);
        if (isRead)
            return "world.picture.read(uint2(" + (width > 1 ? index(width) : "0u") + ", " +
                   (height > 1 ? index(height) : "0u") + "), " + number + "u)";
        const std::string x = at(width);
        return "world.picture." + sample + "float2(" + x + ", " + at(height) + "), level(" +
               number + ".0f))";
    }
    case Kind::half_: {
        const std::string x = isRead ? index(4) : at(4), y = isRead ? index(4) : at(4);
        return "world.sheets." + (isRead ? "read(uint2(" : sample + "float2(") + x + ", " + y +
               "), " + index(3) + ")";
    }
    case Kind::signed_: {
        const std::string x = isRead ? index(4) : at(4), y = isRead ? index(4) : at(4);
        return "world.solid." + (isRead ? "read(uint3(" : sample + "float3(") + x + ", " + y +
               ", " + (isRead ? index(4) : at(4)) + "))";
    }
    default: {
        const std::string x = index(8);
        return "world.lines.read(" + x + ", " + index(2) + ")";
    }
    }
}

Expression Generator::texture(Type type) {
    static constexpr std::array<const char*, 4> lanes{".x", ".y", ".z", ".w"};
    Expression value{texel(type.kind), 4100, 1};
    if (type.kind == Kind::half_ || type.kind == Kind::signed_)
        value.bound = 400;
    if (type.isScalar())
        value.text += lanes[below(4)];
    else if (type.lanes < 4 || chance(50))
        value.text =
            typeName({type.kind, 4}) + "(" + value.text + ")" + swizzle(4, type.lanes, false);
    return value;
}

// A statement that writes this invocation's texel, or asks for the size of a texture.
void Generator::world() {
    static constexpr std::array<const char*, 7> sizes{
        "line.get_width()",   "picture.get_height(1u)",  "picture.get_num_mip_levels()",
        "sheets.get_width()", "sheets.get_array_size()", "lines.get_array_size()",
        "solid.get_depth()"};
    if (!scope_.hasWorld)
        return stir();
    if (chance(25))
        return line("h = mixed(h, uint(world." + std::string(sizes[below(7)]) + "));");
    const Type four{Kind::unsigned_, 4};
    line("world.board.write(" + exactly(four, expression(four, 2).text) + ", world.place);");
    line("world.board.fence();");
}

} // namespace tarnwick::trials
