#include "tests/TarnwickMSL/Library/References.h"

#include <algorithm>
#include <array>
#include <bit>

namespace tarnwick::trials {

namespace {

using Real = long double;
using Vector = std::array<Real, 3>;

Real dot(const Vector& a, const Vector& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}
Real length(const Vector& a) {
    return std::sqrt(dot(a, a));
}
Real crossFirst(const Vector& a, const Vector& b) {
    return a[1] * b[2] - a[2] * b[1];
}
Real unit(const Vector& a) {
    return a[0] / length(a);
}
Real reflected(const Vector& i, const Vector& n) {
    return i[0] - 2 * dot(n, i) * n[0];
}

// The first component of refract(normalize(i), normalize(n), ratio).
Real refracted(const Vector& i, const Vector& n, Real ratio) {
    const Real along = dot(i, n) / (length(i) * length(n));
    const Real k = 1 - ratio * ratio * (1 - along * along);
    return k < 0 ? 0 : ratio * unit(i) - (ratio * along + std::sqrt(k)) * unit(n);
}

Real determinant(Real x, Real y, Real z) { // of the columns (x, y, z), (y, z + 1, x), (2, x, y)
    return dot({x, y, z}, {(z + 1) * y - x * x, x * 2 - y * y, y * x - (z + 1) * 2});
}

Real fields(Real x, Real y, Real z, Real most, Real shift) {
    auto field = [&](Real v) { return std::nearbyint(std::clamp<Real>(v, 0, most)); };
    return field(x) + field(y) * shift + field(z) * shift * shift;
}

// A format of pack.h. Its halves are as its floats, and a word packed again is the word.
struct PackedFormat {
    const char *packed, *unpacked;
    std::size_t lanes;
};
constexpr PackedFormat packedFormats[] = {
    {"unorm4x8", "unorm4x8", 4},   {"srgb_unorm4x8", "unorm4x8_srgb", 4},
    {"snorm4x8", "snorm4x8", 4},   {"unorm2x16", "unorm2x16", 2},
    {"snorm2x16", "snorm2x16", 2}, {"unorm10a2", "unorm10a2", 4},
    {"unorm565", "unorm565", 3}};

} // namespace

std::vector<Case> geometricCases() {
    const std::vector<Inputs> near(3, linear(-5, 5)), bytes(3, whole(-20, 300));
    const Bound roundings{"its formula's roundings", 0, 3e-5};
    const auto none = Specials::none;
    std::vector<Case> cases;
    auto add = [&](std::string name, const char* lowering, std::string body, auto reference,
                   Bound bound, const std::vector<Inputs>& inputs) {
        cases.push_back({std::move(name), lowering, std::move(body), inputs, reference,
                         std::move(bound), none, Element::float_, true});
    };
    // clang-format off
    add("dot", "products and sums", "r = dot(float3(x, y, z), float3(y, z, x));", TRUTH(dot({x, y, z}, {y, z, x})), roundings, near);
    add("cross", "products and differences", "r = cross(float3(x, y, z), float3(y, z, x)).x;", TRUTH(crossFirst({x, y, z}, {y, z, x})), roundings, near);
    add("length", "Sqrt of dot", "r = length(float3(x, y, z));", TRUTH(length({x, y, z})), roundings, near);
    add("length_squared", "dot", "r = length_squared(float2(x, y));", TRUTH(x * x + y * y), roundings, near);
    add("distance", "Sqrt of dot", "r = distance(float3(x, y, z), float3(1, 2, 3));", TRUTH(length({x - 1, y - 2, z - 3})), roundings, near);
    add("distance_squared", "dot", "r = distance_squared(float2(x, y), float2(z));", TRUTH((x - z) * (x - z) + (y - z) * (y - z)), {"its formula's roundings", 0, 1e-4}, near);
    add("normalize", "x / Sqrt of dot", "r = normalize(float3(x, y, z)).x;", TRUTH(unit({x, y, z})), {"its formula's roundings", 0, 1e-6}, near);
    add("faceforward", "selection", "r = faceforward(float3(x), float3(y), float3(z)).x;", TRUTH(y * z < 0 ? x : -x), exactly(), near);
    add("reflect", "i - 2 dot(n, i) n", "r = reflect(float3(x, y, z), float3(0.6, 0, 0.8)).x;", TRUTH(reflected({x, y, z}, {0.6L, 0, 0.8L})), roundings, near);
    add("refract", "its formula", "r = refract(normalize(float3(x, y, 2)), normalize(float3(z, 1, 2)), 0.7).x;", TRUTH(refracted({x, y, 2}, {z, 1, 2}, 0.7L)), roundings, near);
    add("determinant", "products and sums", "r = determinant(float3x3(float3(x, y, z), float3(y, z + 1, x), float3(2, x, y)));", TRUTH(determinant(x, y, z)), {"its formula's roundings", 0, 5e-4}, near);
    add("determinant of 4 x 4", "products and sums", "r = determinant(float4x4(float4(x, y, z, 0), float4(y, z + 1, x, 0), float4(2, x, y, 0), float4(x, y, z, 1)));", TRUTH(determinant(x, y, z)), {"its formula's roundings", 0, 5e-4}, near);
    add("transpose", "shuffles", "float3x2 m = transpose(float2x3(float3(x, y, z), float3(y, z, x))); r = m[2].x + m[1].y * 10 + m[0].y * 100;", TRUTH(z + z * 10 + y * 100), {"3 roundings", 0, 2e-4}, near);
    add("any", "disjunction", "r = any(float3(x, y, z) > 2) ? 1 : 0;", TRUTH(std::max({x, y, z}) > 2 ? 1.0L : 0.0L), exactly(), near);
    add("all", "conjunction", "r = all(float3(x, y, z) > -2) ? 1 : 0;", TRUTH(std::min({x, y, z}) > -2 ? 1.0L : 0.0L), exactly(), near);
    add("pack_float_to_unorm4x8", "shifts", "r = pack_float_to_unorm4x8(float4(x, y, z, 0) / 255);", TRUTH(fields(x, y, z, 255, 256)), exactly(), bytes);
    add("unpack_unorm4x8_to_float", "shifts", "r = unpack_unorm4x8_to_float(as_type<uint>(x)).y * 255;", TRUTH((std::bit_cast<std::uint32_t>(static_cast<float>(x)) >> 8) & 255), {"2 roundings", 0, 1e-4}, near);
    add("pack_float_to_snorm4x8", "shifts", "r = unpack_snorm4x8_to_float(pack_float_to_snorm4x8(float4(x, y, z, 0) / 127)).z * 127;", TRUTH(std::clamp<Real>(z, -127, 127)), {"2 roundings", 0, 1e-4}, bytes);
    add("pack_float_to_unorm2x16", "shifts", "r = unpack_unorm2x16_to_float(pack_float_to_unorm2x16(float2(x, y) / 65535)).y * 65535;", TRUTH(std::max<Real>(y, 0)), {"2 roundings", 0, 1e-4}, bytes);
    add("pack_float_to_snorm2x16", "shifts", "r = unpack_snorm2x16_to_float(pack_float_to_snorm2x16(float2(x, y) / 32767)).y * 32767;", TRUTH(y), {"2 roundings", 0, 1e-4}, bytes);
    add("pack_float_to_unorm10a2", "shifts", "r = unpack_unorm10a2_to_float(pack_float_to_unorm10a2(float4(x, y, z, 1023) / 1023)).y * 1023;", TRUTH(std::max<Real>(y, 0)), {"2 roundings", 0, 1e-4}, bytes);
    add("pack_float_to_unorm565", "shifts", "r = pack_float_to_unorm565(float3(z, y, x) / float3(31, 63, 31));", TRUTH(std::clamp<Real>(x, 0, 31) + 32 * std::clamp<Real>(y, 0, 63) + 2048 * std::clamp<Real>(z, 0, 31)), exactly(), bytes);
    add("pack_float_to_srgb_unorm4x8", "powr", "r = pack_float_to_srgb_unorm4x8(unpack_unorm4x8_srgb_to_float((uint(max(x, 0.0)) & 255) << 8)) >> 8;", TRUTH(std::fmod(std::max<Real>(x, 0), 256.0L)), exactly(), bytes);
    // clang-format on
    for (const PackedFormat& format : packedFormats) {
        const std::string pack = std::string("pack_float_to_") + format.packed,
                          unpack = std::string("unpack_") + format.unpacked,
                          lanes = std::to_string(format.lanes),
                          floats = std::string("(float4(x, y, z, x) / 9).xyzw", 25 + format.lanes);
        add("unpack_" + std::string(format.unpacked) + "_to_half", "in float",
            "auto p = " + pack + "(" + floats + "); half" + lanes + " h = " + unpack +
                "_to_half(p); r = all(h == half" + lanes + "(" + unpack +
                "_to_float(p))) && pack_half_to_" + format.packed + "(h) == " + pack + "(float" +
                lanes + "(h)) && " + pack + "(" + unpack + "_to_float(p)) == p ? 1 : 0;",
            TRUTH(1), exactly(), near);
    }
    return cases;
}

} // namespace tarnwick::trials
