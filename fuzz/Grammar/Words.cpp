#include "fuzz/Grammar/Words.h"

#include <algorithm>
#include <array>

namespace tarnwick::fuzz {
namespace {

using Word = std::string_view;

// clang-format off
constexpr Word types[] = {
    "bool", "char", "uchar", "short", "ushort", "int", "uint", "long", "ulong", "half", "float",
    "bfloat", "size_t"};
constexpr Word vectors[] = {
    "bool2", "bool3", "bool4", "char2", "char3", "char4", "uchar2", "uchar4", "short2", "short3",
    "ushort2", "ushort4", "int2", "int3", "int4", "uint2", "uint3", "uint4", "long2", "ulong3",
    "half2", "half3", "half4", "float2", "float3", "float4", "packed_float3", "packed_half2",
    "packed_uchar4", "packed_short3"};
constexpr Word matrices[] = {
    "float2x2", "float2x3", "float3x2", "float3x3", "float3x4", "float4x3", "float4x4", "half2x2",
    "half3x3", "half4x2", "half4x4"};
constexpr Word spaces[] = {"device", "constant", "thread", "threadgroup"};
constexpr Word accesses[] = {"sample", "read", "write", "read_write"};
constexpr Word textures[] = {
    "texture1d", "texture1d_array", "texture2d", "texture2d_array", "texture3d", "texturecube",
    "texturecube_array", "texture2d_ms", "texture_buffer"};
constexpr Word depths[] = {"depth2d", "depth2d_array", "depthcube", "depthcube_array", "depth2d_ms"};
constexpr Word stages[] = {"vertex", "fragment", "kernel"};
constexpr Word storages[] = {"const", "constexpr", "static", "inline", "volatile"};
constexpr Word jumps[] = {"break", "continue", "return"};
constexpr Word values[] = {"true", "false"};
constexpr Word attributes[] = {
    "position", "point_size", "clip_distance", "vertex_id", "instance_id", "base_vertex",
    "base_instance", "front_facing", "point_coord", "sample_id", "sample_mask", "primitive_id",
    "render_target_array_index", "viewport_array_index", "barycentric_coord", "amplification_id",
    "thread_position_in_grid", "thread_position_in_threadgroup", "thread_index_in_threadgroup",
    "threadgroup_position_in_grid", "threads_per_threadgroup", "threads_per_grid",
    "thread_index_in_simdgroup", "threads_per_simdgroup", "simdgroup_index_in_threadgroup",
    "stage_in", "flat", "center_no_perspective", "centroid_perspective", "sample_perspective",
    "invariant", "early_fragment_tests"};
constexpr Word numbered[] = {"buffer", "texture", "sampler", "color", "attribute", "threadgroup", "id",
    "raster_order_group", "max_total_threads_per_threadgroup", "function_constant"};
constexpr Word ofOne[] = {
    "abs", "acos", "asin", "atan", "ceil", "cos", "cosh", "exp", "exp2", "exp10", "fabs", "floor",
    "fract", "log", "log2", "log10", "rint", "round", "rsqrt", "saturate", "sign", "sin", "sinh",
    "sinpi", "sqrt", "tan", "tanh", "trunc", "normalize", "length", "isnan", "isinf", "signbit",
    "any", "all", "clz", "ctz", "popcount", "reverse_bits", "dfdx", "dfdy", "fwidth", "transpose",
    "determinant", "simd_sum", "simd_max", "simd_any", "quad_sum"};
constexpr Word ofTwo[] = {
    "min", "max", "fmin", "fmax", "pow", "powr", "atan2", "fmod", "dot", "cross", "distance", "step",
    "reflect", "copysign", "fdim", "ldexp", "nextafter", "absdiff", "addsat", "subsat", "hadd",
    "rhadd", "mulhi", "rotate"};
constexpr Word ofThree[] = {
    "clamp", "mix", "fma", "smoothstep", "select", "mad24", "madhi", "madsat", "median3", "min3",
    "max3", "refract", "faceforward", "extract_bits"};
constexpr Word swizzles[] = {
    "x", "y", "z", "w", "xy", "yx", "zw", "xx", "xyz", "zyx", "yzx", "xxx", "xyzw", "wzyx", "yyyy", "r",
    "g", "b", "a", "rgb", "bgra"};
constexpr Word atomics[] = {
    "atomic_fetch_add_explicit", "atomic_fetch_sub_explicit", "atomic_fetch_min_explicit",
    "atomic_fetch_max_explicit", "atomic_fetch_and_explicit", "atomic_fetch_or_explicit",
    "atomic_fetch_xor_explicit", "atomic_exchange_explicit"};
constexpr Word atomicTypes[] = {"atomic_int", "atomic_uint", "atomic_float", "atomic_bool", "atomic_ulong"};
constexpr Word records[] = {"struct", "class", "union"};
constexpr Word sums[] = {"+", "-", "*", "/", "%", "&", "|", "^", "<<", ">>"};
constexpr Word comparisons[] = {"<", ">", "<=", ">=", "==", "!=", "&&", "||"};
constexpr Word assignments[] = {
    "=", "+=", "-=", "*=", "/=", "%=", "&=", "|=", "^=", "<<=", ">>="};
constexpr Word prefixes[] = {"++", "--", "!", "~"};

constexpr std::array<WordClass, 24> classes{
    types, vectors, matrices, spaces, accesses, textures, depths, stages, storages, jumps, values,
    attributes, numbered, ofOne, ofTwo, ofThree, swizzles, atomics, atomicTypes, records, sums,
    comparisons, assignments, prefixes};

// Words that none can replace.
constexpr Word others[] = {
    "if", "else", "for", "while", "do", "switch", "case", "default", "auto", "void", "using", "typedef",
    "template", "typename", "namespace", "enum", "sizeof", "alignof", "static_assert", "operator",
    "metal", "mem_flags", "mem_threadgroup", "mem_device", "as_type", "memory_order_relaxed",
    "threadgroup_barrier", "discard_fragment", "INFINITY", "NAN", "M_PI_F", "array", "vec", "matrix",
    "atomic_load_explicit", "atomic_store_explicit", "access", "coord", "filter", "address", "level",
    "nullptr", "this", "static_cast", "reinterpret_cast"};

constexpr Word numbers[] = {
    "0", "1", "2", "3", "4", "5", "7", "8", "15", "16", "31", "32", "33", "63", "64", "65", "127", "128",
    "255", "256", "1000", "4096", "32767", "32768", "60000", "60001", "65535", "65536", "262144",
    "2147483647", "2147483648", "0x80000000", "4294967295u", "9223372036854775807l",
    "18446744073709551615ul", "0u", "1u", "-1", "0.0", "-0.0", "0.5", "1.0", "1.5f", "2.0", "1e-45f",
    "1e38f", "3.4e38", "65504.0h", "0.00006h", "1e10", "16777216.0", "16777217.0", "0x1p-149f"};

constexpr Word statements[] = {
    "if ($e) { $s }",
    "if ($e) { $s } else { $s }",
    "if ($e) return; $s",
    "for (int k = 0; k < $n; ++k) { $s }",
    "for (uint k = 0; k < uint($e); k += 3) { if ($e) break; $s }",
    "for (int i = $n; i > 0; i /= 2) { if ($e) continue; $s }",
    "for (float t = 0.0; t < 4.0; t += 0.5) { $s }",
    "while ($e) { $s }",
    "do { $s } while ($e);",
    "switch (int($e)) { case 0: $s case $n: $s break; default: $s }",
    "{ $s }",
    "[&] { $s }();",
    "auto v = $e; $s",
    "float list[4] = {float($e), 1.0, 2.0}; list[uint($e) % 4] += 1.0; $s",
    "int table[] = {1, 2, 3, $n}; $s",
    "thread auto& r = $e; $s",
    "constexpr int count = $n; $s",
    "return $e;",
    "break;",
    "continue;",
    "return;",
    "$e = $e;",
    "$e += $e;",
    "$e;",
    "threadgroup_barrier(mem_flags::mem_threadgroup);",
    "discard_fragment();"};

constexpr Word expressions[] = {
    "($e ? $e : $e)", "-($e)", "!($e)", "~($e)", "bool($e)", "char($e)", "ushort($e)", "int($e)",
    "uint($e)", "long($e)", "half($e)", "float($e)", "float2($e)", "float3($e)", "float4($e)",
    "uint2($e)", "half3($e)", "float2x2($e)", "($e).x", "($e).zyx", "($e).yy", "($e)[1]", "($e)[$e]",
    "abs($e)", "floor($e)", "fract($e)", "sin($e)", "exp($e)", "saturate($e)", "any($e)", "all($e)",
    "max($e, $e)", "pow($e, $e)", "fmod($e, $e)", "clamp($e, $e, $e)", "mix($e, $e, $e)",
    "select($e, $e, bool($e))", "as_type<uint>($e)", "as_type<float>($e)", "as_type<half2>($e)", "&$e",
    "*&$e", "($e, $e)", "($e + $e)", "($e - $e)", "($e * $e)", "($e / $e)", "($e % $e)", "($e << $e)",
    "($e >> $e)", "($e < $e)", "($e == $e)", "($e && $e)", "($e || $e)", "($e & $e)", "$n", "($e)++",
    "--($e)", "sizeof($e)", "[&] { return $e; }()"};
// clang-format on

} // namespace

std::span<const std::string_view> edgeNumbers() {
    return numbers;
}

std::span<const std::string_view> statementForms() {
    return statements;
}

std::span<const std::string_view> expressionForms() {
    return expressions;
}

bool isOfLibrary(std::string_view word) {
    return std::ranges::find(others, word) != std::end(others);
}

WordClass classOf(std::string_view word) {
    const auto found = std::ranges::find_if(classes, [&](const WordClass& words) {
        return std::ranges::find(words, word) != words.end();
    });
    return found == classes.end() ? WordClass() : *found;
}

} // namespace tarnwick::fuzz
