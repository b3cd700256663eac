// Textures of every shape, access and component: what programs read, sample, gather, compare and
// write beside the same worked out here. Every texel of a texture has a number of its own.
#include "TarnwickGPU/Commands.h"
#include "TarnwickGPU/Device.h"
#include "TarnwickGPU/Device/DeviceState.h"
#include "tests/TarnwickMSL/KernelTest.h"
#include "tests/TarnwickMSL/NumberedTextures.h"
#include "tests/Validation.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstring>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace tarnwick::tests {

namespace {

// `place` and `at` are what read and sample take, for a Spot `a` and its middle `u`, in [0, 1].
struct Shape {
    const char* name;
    gpu::TextureDescriptor texture;
    const char *place, *at;
    bool hasLevels = true, isDepth = false;
};

using Type = gpu::TextureType;
const std::array shapes{
    Shape{"1d", {.type = Type::type1D, .width = 5}, "a.x", "u.x", false},
    Shape{"1d_array",
          {.type = Type::type1DArray, .width = 5, .arrayLength = 3},
          "a.x, a.z",
          "u.x, a.z",
          false},
    Shape{"2d", {.type = Type::type2D, .width = 6, .height = 4, .mipLevels = 2}, "a.xy", "u.xy"},
    Shape{"2d_array",
          {.type = Type::type2DArray, .width = 6, .height = 4, .mipLevels = 2, .arrayLength = 3},
          "a.xy, a.z",
          "u.xy, a.z"},
    Shape{"3d",
          {.type = Type::type3D, .width = 6, .height = 4, .depth = 5, .mipLevels = 2},
          "a.xyz",
          "u.xyz"},
    Shape{"cube",
          {.type = Type::typeCube, .width = 4, .height = 4, .mipLevels = 2},
          "a.xy, a.z",
          "direction(u.xy, a.z)"},
    Shape{"cube_array",
          {.type = Type::typeCubeArray, .width = 4, .height = 4, .mipLevels = 2, .arrayLength = 2},
          "a.xy, a.z % 6, a.z / 6",
          "direction(u.xy, a.z % 6), a.z / 6"}};

const Shape& shapeOf(const char* name) {
    return *std::find_if(shapes.begin(), shapes.end(),
                         [&](const Shape& one) { return std::string(one.name) == name; });
}

constexpr std::span colors(components.data(), 6); // without depth

constexpr const char* preamble = R"(
constexpr sampler nearby(filter::nearest, mip_filter::nearest);
static float3 direction(float2 u, uint face) { // Vulkan 1.3, 16.5.3, backwards
    float s = u.x * 2 - 1, t = u.y * 2 - 1;
    switch (face) {
    case 0: return float3(1, -t, -s);
    case 1: return float3(-1, -t, s);
    case 2: return float3(s, 1, t);
    case 3: return float3(s, -1, -t);
    case 4: return float3(s, -t, 1);
    default: return float3(-s, -t, -1);
    }
}
)";

class TextureShapes : public KernelTest {
  protected:
    std::unique_ptr<gpu::Texture> filled(const gpu::TextureDescriptor& descriptor,
                                         const char* component) {
        return numberedTexture(*device, descriptor, componentOf(component));
    }

    // A kernel `name` over `a` and `u`, of a texture `t` of the type.
    static std::string kernel(const std::string& name, const std::string& type,
                              const gpu::TextureDescriptor& of, const std::string& body) {
        const std::string size = "float3(" + std::to_string(of.width) + ", " +
                                 std::to_string(of.height) + ", " + std::to_string(of.depth) + ")";
        // `u` is the texel's middle.
        return "kernel void " + name +
               "(device float4* out [[buffer(0)]], const device uint4* at [[buffer(1)]], " + type +
               " t [[texture(0)]], sampler given [[sampler(0)]],"
               " uint i [[thread_position_in_grid]]) {\n    uint4 a = at[i];\n    float3 u = "
               "(float3(a.xyz) + 0.5) / max(floor(" +
               size + " / float(1u << a.w)), float3(1));\n    " + body + "\n}\n";
    }
};

Texel expectedAt(const gpu::TextureDescriptor& texture, const Spot& spot) {
    const auto number = static_cast<float>(numberOf(spot));
    return isInside(texture, spot) ? Texel{number, number + 1, number + 2, number + 3} : Texel{};
}

std::string describe(const Spot& spot) {
    return "at " + std::to_string(spot.x) + ", " + std::to_string(spot.y) + ", " +
           std::to_string(spot.slice) + ", level " + std::to_string(spot.level);
}

// Halves are whole up to 2048: larger numbers are rounded on their way.
float slack(const Component& component) {
    return component.isReal && component.bytes == 2 ? 4.0f : 0.0f;
}

void expectNear(const Texel& given, const Texel& wanted, float slack, const std::string& what) {
    for (std::size_t lane = 0; lane < 4; ++lane)
        ASSERT_NEAR(given[lane], wanted[lane], slack) << what;
}

} // namespace

TEST_F(TextureShapes, readAndSampleEveryTexel) {
    for (const Shape& shape : shapes)
        for (const Component& component : colors) {
            const std::string name = shape.name, of = std::string("<") + component.name;
            const std::string level = shape.hasLevels ? ", level(a.w)" : "";
            const auto library =
                compiled(preamble +
                         kernel("reads", "texture" + name + of + ", access::read>", shape.texture,
                                std::string("out[i] = float4(t.read(") + shape.place + ", a.w));") +
                         kernel("samples", "texture" + name + of + ">", shape.texture,
                                std::string("out[i] = float4(t.sample(nearby, ") + shape.at +
                                    level + ")) + float4(t.read(" + shape.place + ", a.w));"));
            const auto texture = filled(shape.texture, component.name);
            ASSERT_TRUE(texture) << name << of;
            const auto all = spots(shape.texture, 1), inside = spots(shape.texture);
            const auto read = texels(*library, "reads", all, texture.get());
            for (std::size_t i = 0; i < all.size(); ++i)
                expectNear(read[i], expectedAt(shape.texture, all[i]), slack(component),
                           name + of + " read " + describe(all[i]));
            const auto sampled = texels(*library, "samples", inside, texture.get());
            for (std::size_t i = 0; i < inside.size(); ++i) {
                Texel twice = expectedAt(shape.texture, inside[i]);
                for (float& lane : twice)
                    lane *= 2;
                expectNear(sampled[i], twice, 2 * slack(component),
                           name + of + " sampled " + describe(inside[i]));
            }
        }
}

TEST_F(TextureShapes, takeWhatIsWrittenAndNothingBeyond) {
    for (const Shape& shape : shapes)
        for (const Component& component : colors) {
            const std::string name = shape.name, of = std::string("<") + component.name;
            const std::string place = shape.place, texel = "vec<" + std::string(component.name);
            const auto library = compiled(
                preamble +
                kernel("writes", "texture" + name + of + ", access::write>", shape.texture,
                       "t.write(" + texel + ", 4>(1 + a.x, a.y, a.z, 7), " + place +
                           "); out[i] = 0;") +
                kernel("doubles", "texture" + name + of + ", access::read_write>", shape.texture,
                       texel + ", 4> v = t.read(" + place + "); t.write(v * " + component.name +
                           "(2), " + place + "); t.fence(); out[i] = float4(t.read(" + place +
                           "));"));
            auto descriptor = shape.texture;
            descriptor.mipLevels = 1;
            const auto texture = filled(descriptor, component.name);
            texels(*library, "writes", spots(descriptor, 1), texture.get());
            const auto all = spots(descriptor, 1);
            const auto doubled = texels(*library, "doubles", all, texture.get());
            for (std::size_t i = 0; i < all.size(); ++i) {
                const auto x = static_cast<float>(all[i].x), y = static_cast<float>(all[i].y),
                           z = static_cast<float>(all[i].slice);
                const Texel wanted =
                    isInside(descriptor, all[i]) ? Texel{2 * (1 + x), 2 * y, 2 * z, 14} : Texel{};
                expectNear(doubled[i], wanted, 0, name + of + " " + describe(all[i]));
            }
        }
}

TEST_F(TextureShapes, writeAndReadTheLevelAskedFor) {
    for (const char* name : {"2d", "2d_array", "3d", "cube"}) {
        const Shape& shape = shapeOf(name);
        const std::string place = shape.place, type = std::string("texture") + name;
        const auto library =
            compiled(preamble +
                     kernel("writes", type + "<uint, access::read_write>", shape.texture,
                            "t.write(t.read(" + place + ", 1) + 5, " + place +
                                ", 1); out[i] = t.get_width(1);") +
                     kernel("reads", type + "<uint>", shape.texture,
                            "out[i] = float4(t.read(" + place + ", a.w));"));
        const auto texture = filled(shape.texture, "uint");
        auto upper = spots(shape.texture);
        std::erase_if(upper, [](const Spot& spot) { return spot.level == 0; });
        const auto widths = texels(*library, "writes", upper, texture.get());
        EXPECT_EQ(widths[0][0], static_cast<float>(shape.texture.width / 2)) << name;
        const auto all = spots(shape.texture);
        const auto read = texels(*library, "reads", all, texture.get());
        for (std::size_t i = 0; i < all.size(); ++i)
            EXPECT_EQ(read[i][0], static_cast<float>(numberOf(all[i]) + (all[i].level ? 5 : 0)))
                << name << " " << describe(all[i]);
    }
}

// Where gather looks, of a place between four texels (Metal Shading Language 3.1, 6.12): the lower
// left one first, then counter-clockwise.
TEST_F(TextureShapes, gatherAndCompareFourTexels) {
    struct Row {
        const char *shape, *at;
    };
    for (const Row& row :
         {Row{"2d", "e"}, Row{"2d_array", "e, a.z"}, Row{"cube", "direction(e, a.z)"},
          Row{"cube_array", "direction(e, a.z % 6), a.z / 6"}}) {
        const Shape& shape = shapeOf(row.shape);
        const std::string name = row.shape, at = row.at;
        const std::string size =
            std::to_string(shape.texture.width) + ", " + std::to_string(shape.texture.height);
        const std::string between = "float2 e = float2(a.xy + 1) / float2(" + size +
                                    "); float r = (a.x + 1 + 10 * a.y + 100 * a.z + 5) / 8192.0;";
        const bool isCube = name.starts_with("cube");
        const auto library = compiled(
            preamble + std::string("constexpr sampler c(filter::linear, compare_func::less);\n") +
            kernel("gathers", "texture" + name + "<int>", shape.texture,
                   between + "out[i] = float4(t.gather(nearby, " + at +
                       (isCube ? ", component::z));" : ", int2(0), component::z));")) +
            kernel("depths", "depth" + name + "<float>", shape.texture,
                   between + "out[i] = t.gather(nearby, " + at + ") * 8192;") +
            kernel("compares", "depth" + name + "<float>", shape.texture,
                   between + "out[i] = t.gather_compare(c, " + at + ", r);") +
            kernel("mixes", "depth" + name + "<float>", shape.texture,
                   between + "out[i] = float4(t.sample_compare(c, " + at +
                       ", r), t.sample_compare(c, " + at +
                       ", r, level(0)), t.sample_compare(given, " + at + ", r), t.sample(nearby, " +
                       at + ") * 8192);"));
        auto descriptor = shape.texture;
        descriptor.mipLevels = 1;
        const auto texture = filled(descriptor, "int");
        const auto depth = filled(descriptor, "depth");
        const auto greater =
            device->newSamplerState({.compareFunction = gpu::CompareFunction::greater});
        auto at4 = spots(descriptor);
        std::erase_if(at4, [&](const Spot& spot) {
            return spot.x + 1 >= descriptor.width || spot.y + 1 >= descriptor.height;
        });
        const auto gathered = texels(*library, "gathers", at4, texture.get());
        const auto depths = texels(*library, "depths", at4, depth.get());
        const auto compared = texels(*library, "compares", at4, depth.get());
        const auto mixed = texels(*library, "mixes", at4, depth.get(), greater.get());
        for (std::size_t i = 0; i < at4.size(); ++i) {
            const auto n = static_cast<float>(numberOf(at4[i]));
            const std::string what = name + " " + describe(at4[i]);
            expectNear(gathered[i], {n + 12, n + 13, n + 3, n + 2}, 0, what);
            expectNear(depths[i], {n + 10, n + 11, n + 1, n}, 0.01f, what);
            expectNear(compared[i], {1, 1, 0, 0}, 0, what); // the reference is n + 5
            expectNear({mixed[i][0], mixed[i][1], 0, 0}, {0.5f, 0.5f, 0, 0}, 0.01f, what);
            EXPECT_TRUE(mixed[i][2] == 0 || mixed[i][2] == 1) << what;
            EXPECT_EQ(mixed[i][2] == 1, mixed[i][3] < n + 5) << what;
        }
    }
}

TEST_F(TextureShapes, readAsZeroWhereNothingFits) {
    std::string source = preamble;
    std::vector<std::string> names, types;
    auto add = [&](const std::string& type, const std::string& value) {
        types.push_back(type);
        names.push_back("k" + std::to_string(names.size()));
        source += kernel(names.back(), type, {}, "out[i] = 1 + float4(" + value + ");");
    };
    for (const Shape& shape : shapes)
        for (const char* component : {"float", "int", "ushort"}) {
            const std::string of = std::string("texture") + shape.name + "<" + component;
            const std::string place = shape.place, at = shape.at;
            add(of + ">", "t.sample(nearby, " + at + ") + t.read(" + place + ", a.w)");
            add(of + ", access::read>", "t.read(" + place + ", a.w)");
            add(of + ", access::read_write>", "t.read(" + place + ")");
        }
    for (const char* name : {"2d", "2d_array", "cube", "cube_array"})
        add(std::string("depth") + name + "<float>",
            std::string("t.sample(nearby, ") + shapeOf(name).at + ") + t.gather(nearby, " +
                shapeOf(name).at + ")");
    for (const char* type : {"texture2d_ms<float>", "texture2d_ms<uint>", "depth2d_ms<float>"})
        add(type, "t.read(a.xy, a.z)");
    add("texture2d_ms_array<int>", "t.read(a.xy, a.z, 0)");
    const auto library = compiled(source);
    const std::vector<Spot> at{{0, 0, 0, 0}, {3, 1, 2, 1}, {0, 0, 9, 0}};
    const auto other = filled(shapeOf("1d_array").texture, "uint"); // fits one type alone
    bool& hasNulls = device->state().record.features.nullDescriptors;
    const bool hadNulls = std::exchange(hasNulls, false); // so that textures stand in
    for (const std::string& name : names)
        for (const Texel& each : texels(*library, name, at, nullptr))
            EXPECT_EQ(each, (Texel{1, 1, 1, 1})) << name;
    hasNulls = hadNulls;
    for (std::size_t n = 0; n < names.size(); ++n)
        for (const gpu::Texture* given : std::array<const gpu::Texture*, 2>{nullptr, other.get()})
            for (const Texel& each : texels(*library, names[n], at, given))
                EXPECT_TRUE((given && types[n].starts_with("texture1d_array<ushort")) ||
                            each == (Texel{1, 1, 1, 1}))
                    << types[n];
}

// Each sample of a pixel has a number of its own, drawn there.
TEST_F(TextureShapes, readTheSamplesOfPixels) {
    const auto library = compiled(
        preamble + std::string(R"(
struct Corner { float4 position [[position]]; };
vertex Corner corner(uint id [[vertex_id]], constant float& depth [[buffer(0)]]) {
    return {float4(float2((id << 1) & 2, id & 2) * 2 - 1, depth, 1)};
}
fragment float4 numbered(Corner in [[stage_in]], uint sample [[sample_id]],
                         constant uint& slice [[buffer(0)]]) {
    return float4(floor(in.position.xy), sample, slice);
}
)") + kernel("plain", "texture2d_ms<float>", {}, "out[i] = t.read(a.xy, a.w);") +
        kernel("layered", "texture2d_ms_array<float>", {}, "out[i] = t.read(a.xy, a.z, a.w);") +
        kernel("sizes", "texture2d_ms_array<float>", {},
               "out[i] = float4(t.get_width(), t.get_height(), t.get_array_size(),"
               " t.get_num_samples());") +
        kernel("depths", "depth2d_ms<float>", {}, "out[i] = t.read(a.xy, a.w);"));
    auto target = [&](gpu::TextureType type, gpu::PixelFormat format) {
        return device->newTexture({.type = type,
                                   .format = format,
                                   .width = 3,
                                   .height = 2,
                                   .sampleCount = 4,
                                   .arrayLength = type == Type::type2DMultisampleArray ? 2u : 1u,
                                   .usage = {.shaderRead = true, .renderTarget = true},
                                   .storage = gpu::StorageMode::private_});
    };
    const auto plain = target(Type::type2DMultisample, gpu::PixelFormat::rgba32Float);
    const auto layered = target(Type::type2DMultisampleArray, gpu::PixelFormat::rgba32Float);
    const auto depth = target(Type::type2DMultisample, gpu::PixelFormat::depth32Float);
    ASSERT_TRUE(plain && layered && depth);
    const auto vertex = library->newFunction("corner"), fragment = library->newFunction("numbered");
    const auto pipeline =
        device->newRenderPipelineState({.vertex = vertex.get(),
                                        .fragment = fragment.get(),
                                        .color = {.format = gpu::PixelFormat::rgba32Float},
                                        .depthFormat = gpu::PixelFormat::depth32Float,
                                        .sampleCount = 4});
    const auto writes = device->newDepthStencilState({.depthWrites = true});
    auto commands = queue->commandBuffer();
    auto draw = [&](const gpu::Texture& color, std::uint32_t slice) {
        auto encoder = commands->renderCommandEncoder(
            {.color = {.texture = &color, .slice = slice, .load = gpu::LoadAction::clear},
             .depth = {.texture = depth.get(), .store = gpu::StoreAction::store}});
        encoder->setRenderPipelineState(*pipeline);
        encoder->setDepthStencilState(*writes);
        const float far = 0.25f;
        encoder->setVertexBytes(&far, sizeof far, 0);
        encoder->setFragmentBytes(&slice, sizeof slice, 0);
        encoder->drawPrimitives(gpu::PrimitiveType::triangle, 0, 3);
        encoder->endEncoding();
    };
    draw(*plain, 0);
    draw(*layered, 0);
    draw(*layered, 1);
    commands->commit();
    std::vector<Spot> at;
    for (const Spot& spot : spots({.width = 3, .height = 2, .mipLevels = 1}))
        for (std::uint32_t sample = 0; sample < 5; ++sample)
            for (std::uint32_t slice = 0; slice < 2; ++slice)
                at.push_back({spot.x, spot.y, slice, sample});
    const auto one = texels(*library, "plain", at, plain.get());
    const auto two = texels(*library, "layered", at, layered.get());
    const auto depths = texels(*library, "depths", at, depth.get());
    for (std::size_t i = 0; i < at.size(); ++i) {
        const bool isThere = at[i].level < 4;
        const auto x = static_cast<float>(at[i].x), y = static_cast<float>(at[i].y),
                   sample = static_cast<float>(at[i].level),
                   slice = static_cast<float>(at[i].slice);
        EXPECT_EQ(one[i], isThere ? (Texel{x, y, sample, 0}) : Texel{}) << i;
        EXPECT_EQ(two[i], isThere ? (Texel{x, y, sample, slice}) : Texel{}) << i;
        EXPECT_EQ(depths[i][0], isThere ? 0.25f : 0.0f) << i;
    }
    EXPECT_EQ(texels(*library, "sizes", std::vector<Spot>(1), layered.get())[0],
              (Texel{3, 2, 2, 4}));
}

} // namespace tarnwick::tests
