#include "TarnwickMSL/Translation/Wgsl/Names.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace tarnwick::msl::wgsl {

using namespace std::string_view_literals;

// clang-format off
// WGSL, 15.1 "Keyword Summary".
static constexpr std::array keywords{
    "alias"sv, "break"sv, "case"sv, "const"sv, "const_assert"sv, "continue"sv, "continuing"sv, "default"sv,
    "diagnostic"sv, "discard"sv, "else"sv, "enable"sv, "false"sv, "fn"sv, "for"sv, "if"sv, "let"sv, "loop"sv,
    "override"sv, "requires"sv, "return"sv, "struct"sv, "switch"sv, "true"sv, "var"sv, "while"sv,
};
// WGSL, 15.2 "Reserved Words".
static constexpr std::array reserved{
    "NULL"sv, "Self"sv, "abstract"sv, "active"sv, "alignas"sv, "alignof"sv, "as"sv, "asm"sv, "asm_fragment"sv,
    "async"sv, "attribute"sv, "auto"sv, "await"sv, "become"sv, "binding_array"sv, "cast"sv, "catch"sv,
    "class"sv, "co_await"sv, "co_return"sv, "co_yield"sv, "coherent"sv, "column_major"sv, "common"sv,
    "compile"sv, "compile_fragment"sv, "concept"sv, "const_cast"sv, "consteval"sv, "constexpr"sv,
    "constinit"sv, "crate"sv, "debugger"sv, "decltype"sv, "delete"sv, "demote"sv, "demote_to_helper"sv,
    "do"sv, "dynamic_cast"sv, "enum"sv, "explicit"sv, "export"sv, "extends"sv, "extern"sv, "external"sv,
    "fallthrough"sv, "filter"sv, "final"sv, "finally"sv, "friend"sv, "from"sv, "fxgroup"sv, "get"sv, "goto"sv,
    "groupshared"sv, "highp"sv, "impl"sv, "implements"sv, "import"sv, "inline"sv, "instanceof"sv,
    "interface"sv, "layout"sv, "lowp"sv, "macro"sv, "macro_rules"sv, "match"sv, "mediump"sv, "meta"sv,
    "mod"sv, "module"sv, "move"sv, "mut"sv, "mutable"sv, "namespace"sv, "new"sv, "nil"sv, "noexcept"sv,
    "noinline"sv, "nointerpolation"sv, "non_coherent"sv, "noncoherent"sv, "noperspective"sv, "null"sv,
    "nullptr"sv, "of"sv, "operator"sv, "package"sv, "packoffset"sv, "pass"sv, "patch"sv, "pixelfragment"sv,
    "precise"sv, "precision"sv, "premerge"sv, "priv"sv, "protected"sv, "pub"sv, "public"sv, "readonly"sv,
    "ref"sv, "regardless"sv, "register"sv, "reinterpret_cast"sv, "require"sv, "resource"sv, "restrict"sv,
    "self"sv, "set"sv, "shared"sv, "sizeof"sv, "smooth"sv, "snorm"sv, "static"sv, "static_assert"sv,
    "static_cast"sv, "std"sv, "subroutine"sv, "super"sv, "target"sv, "template"sv, "this"sv, "thread_local"sv,
    "throw"sv, "trait"sv, "try"sv, "type"sv, "typedef"sv, "typeid"sv, "typename"sv, "typeof"sv, "union"sv,
    "unless"sv, "unorm"sv, "unsafe"sv, "unsized"sv, "use"sv, "using"sv, "varying"sv, "virtual"sv,
    "volatile"sv, "wgsl"sv, "where"sv, "with"sv, "writeonly"sv, "yield"sv,
};
// Types, functions and words of types that WGSL declares, and `main`. A program may hide most of them,
// but then they would mean two things in one text.
static constexpr std::array declared{
    "abs"sv, "acos"sv, "acosh"sv, "all"sv, "any"sv, "array"sv, "arrayLength"sv, "asin"sv, "asinh"sv, "atan"sv,
    "atan2"sv, "atanh"sv, "atomic"sv, "atomicAdd"sv, "atomicAnd"sv, "atomicCompareExchangeWeak"sv,
    "atomicExchange"sv, "atomicLoad"sv, "atomicMax"sv, "atomicMin"sv, "atomicOr"sv, "atomicStore"sv,
    "atomicSub"sv, "atomicXor"sv, "bitcast"sv, "bool"sv, "ceil"sv, "clamp"sv, "cos"sv, "cosh"sv,
    "countLeadingZeros"sv, "countOneBits"sv, "countTrailingZeros"sv, "cross"sv, "degrees"sv, "determinant"sv,
    "distance"sv, "dot"sv, "dot4I8Packed"sv, "dot4U8Packed"sv, "dpdx"sv, "dpdxCoarse"sv, "dpdxFine"sv,
    "dpdy"sv, "dpdyCoarse"sv, "dpdyFine"sv, "exp"sv, "exp2"sv, "extractBits"sv, "f16"sv, "f32"sv,
    "faceForward"sv, "firstLeadingBit"sv, "firstTrailingBit"sv, "floor"sv, "fma"sv, "fract"sv, "frexp"sv,
    "function"sv, "fwidth"sv, "fwidthCoarse"sv, "fwidthFine"sv, "i32"sv, "insertBits"sv, "inverseSqrt"sv,
    "ldexp"sv, "length"sv, "log"sv, "log2"sv, "main"sv, "mat2x2"sv, "mat2x2f"sv, "mat2x3"sv, "mat2x3f"sv,
    "mat2x4"sv, "mat2x4f"sv, "mat3x2"sv, "mat3x2f"sv, "mat3x3"sv, "mat3x3f"sv, "mat3x4"sv, "mat3x4f"sv,
    "mat4x2"sv, "mat4x2f"sv, "mat4x3"sv, "mat4x3f"sv, "mat4x4"sv, "mat4x4f"sv, "max"sv, "min"sv, "mix"sv,
    "modf"sv, "normalize"sv, "pack2x16float"sv, "pack2x16snorm"sv, "pack2x16unorm"sv, "pack4x8snorm"sv,
    "pack4x8unorm"sv, "pow"sv, "private"sv, "ptr"sv, "quadBroadcast"sv, "quadSwapDiagonal"sv, "quadSwapX"sv,
    "quadSwapY"sv, "quantizeToF16"sv, "radians"sv, "read"sv, "read_write"sv, "reflect"sv, "refract"sv,
    "reverseBits"sv, "round"sv, "sampler"sv, "sampler_comparison"sv, "saturate"sv, "select"sv, "sign"sv,
    "sin"sv, "sinh"sv, "smoothstep"sv, "sqrt"sv, "step"sv, "storage"sv, "storageBarrier"sv, "subgroupAdd"sv,
    "subgroupAll"sv, "subgroupAnd"sv, "subgroupAny"sv, "subgroupBallot"sv, "subgroupBroadcast"sv,
    "subgroupBroadcastFirst"sv, "subgroupElect"sv, "subgroupExclusiveAdd"sv, "subgroupExclusiveMul"sv,
    "subgroupInclusiveAdd"sv, "subgroupInclusiveMul"sv, "subgroupMax"sv, "subgroupMin"sv, "subgroupMul"sv,
    "subgroupOr"sv, "subgroupShuffle"sv, "subgroupShuffleDown"sv, "subgroupShuffleUp"sv,
    "subgroupShuffleXor"sv, "subgroupXor"sv, "tan"sv, "tanh"sv, "textureBarrier"sv, "textureDimensions"sv,
    "textureGather"sv, "textureGatherCompare"sv, "textureLoad"sv, "textureNumLayers"sv, "textureNumLevels"sv,
    "textureNumSamples"sv, "textureSample"sv, "textureSampleBaseClampToEdge"sv, "textureSampleBias"sv,
    "textureSampleCompare"sv, "textureSampleCompareLevel"sv, "textureSampleGrad"sv, "textureSampleLevel"sv,
    "textureStore"sv, "transpose"sv, "trunc"sv, "u32"sv, "uniform"sv, "unpack2x16float"sv,
    "unpack2x16snorm"sv, "unpack2x16unorm"sv, "unpack4x8snorm"sv, "unpack4x8unorm"sv, "vec2"sv, "vec2f"sv,
    "vec2h"sv, "vec2i"sv, "vec2u"sv, "vec3"sv, "vec3f"sv, "vec3h"sv, "vec3i"sv, "vec3u"sv, "vec4"sv,
    "vec4f"sv, "vec4h"sv, "vec4i"sv, "vec4u"sv, "workgroup"sv, "workgroupBarrier"sv, "workgroupUniformLoad"sv,
    "write"sv,
};
// clang-format on

static bool isTaken(std::string_view name) {
    return std::ranges::binary_search(keywords, name) ||
           std::ranges::binary_search(reserved, name) || std::ranges::binary_search(declared, name);
}

static bool isWordLetter(char letter) {
    return std::isalnum(static_cast<unsigned char>(letter)) || letter == '_';
}

// The letters of the text that a name may have; no digit or underscore at its start, because names
// that begin with two underscores, and the name of one, are not valid.
static std::string letters(std::string_view wanted) {
    std::string name;
    for (const char letter : wanted)
        if (isWordLetter(letter) &&
            (!name.empty() || std::isalpha(static_cast<unsigned char>(letter))))
            name += letter;
    return name.empty() ? "value" : name;
}

std::string Names::make(std::string_view wanted) {
    const std::string base = letters(wanted);
    std::string name = base;
    int& number = next_.try_emplace(base, isTaken(base) ? 1 : 2).first->second;
    while (isTaken(name) || taken_.contains(name))
        name = base + "_" + std::to_string(number++);
    taken_.insert(name);
    return name;
}

std::string plainName(std::string_view llvmName) {
    const std::string_view start = llvmName.substr(0, llvmName.find('.'));
    std::size_t end = start.size();
    while (end > 1 && std::isdigit(static_cast<unsigned char>(start[end - 1])))
        --end;
    return std::string(start.substr(0, end));
}

} // namespace tarnwick::msl::wgsl
