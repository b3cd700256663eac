#include "TarnwickCore/Findings/Hints.h"

#include "TarnwickCore/Findings/Words.h"

#include <algorithm>
#include <array>
#include <span>

namespace tarnwick {
namespace {

// The kind of message that a row is for.
enum class Said {
    unknown,   // the name is unknown
    misfit,    // the arguments do not fit
    directive, // the # line is unknown
    fragment,  // `name` is a part of the message
};

// How the text of the hint is made.
enum class Form {
    metal,    // "vec3 is float3 in Metal"
    episode,  // "iTime is u.time in an episode"
    sentence, // `instead` is the whole hint
};

struct Row {
    std::string_view name, instead;
    Form form = Form::metal;
    Said said = Said::unknown;
};

constexpr std::string_view noPrecision = "Metal has no precision qualifiers: leave the word out";
constexpr std::string_view returnsColour = "shade returns the colour: return float4(...)";
constexpr std::string_view channel =
    "in.channel(0, uv) reads a picture, where shade takes Inputs in as its fourth argument";
constexpr std::string_view noRandom = "Metal has no random numbers; a hash gives some: "
                                      "fract(sin(dot(uv, float2(12.9898, 78.233))) * 43758.5453)";
constexpr std::string_view signature =
    "float4 shade(float2 uv, constant Uniforms& u, constant Params& p)";
constexpr std::string_view fromPixels =
    "shade gets uv, from 0 to 1 from the lower left; in pixels it is uv * u.resolution";
constexpr std::string_view uniforms =
    "time and resolution are u.time and u.resolution; others are parameters: "
    "// @param name default min max, then p.name";

// clang-format off
// Types (GLSL 4.60, 4.1)
constexpr auto types = std::to_array<Row>({
    {"vec2", "float2"}, {"vec3", "float3"}, {"vec4", "float4"},
    {"ivec2", "int2"}, {"ivec3", "int3"}, {"ivec4", "int4"},
    {"uvec2", "uint2"}, {"uvec3", "uint3"}, {"uvec4", "uint4"},
    {"bvec2", "bool2"}, {"bvec3", "bool3"}, {"bvec4", "bool4"},
    {"dvec2", "float2"}, {"dvec3", "float3"}, {"dvec4", "float4"},
    {"mat2", "float2x2"}, {"mat3", "float3x3"}, {"mat4", "float4x4"},
    {"mat2x2", "float2x2"}, {"mat2x3", "float2x3"}, {"mat2x4", "float2x4"},
    {"mat3x2", "float3x2"}, {"mat3x3", "float3x3"}, {"mat3x4", "float3x4"},
    {"mat4x2", "float4x2"}, {"mat4x3", "float4x3"}, {"mat4x4", "float4x4"},
    {"var", "auto"}, {"let", "const auto"},
    {"sampler2D", channel, Form::sentence}, {"samplerCube", channel, Form::sentence},
    {"Texture2D", channel, Form::sentence}, {"SamplerState", channel, Form::sentence},
});
// Qualifiers (GLSL 4.60, 4.3 to 4.7)
constexpr auto qualifiers = std::to_array<Row>({
    {"in", "a plain argument is GLSL's in: leave the word out", Form::sentence},
    {"out", "out float3 x is thread float3& x in Metal", Form::sentence},
    {"inout", "inout float3 x is thread float3& x in Metal", Form::sentence},
    {"uniform", uniforms, Form::sentence},
    {"varying", "there are no varyings in an episode: shade gets uv", Form::sentence},
    {"attribute", "there are no attributes in an episode: shade gets uv", Form::sentence},
    {"layout", "there are no layouts in an episode: leave the line out", Form::sentence},
    {"location", "there are no layouts in an episode: leave the line out", Form::sentence},
    {"precision", "Metal has no precision statements: leave the line out", Form::sentence},
    {"highp", noPrecision, Form::sentence}, {"mediump", noPrecision, Form::sentence},
    {"lowp", noPrecision, Form::sentence},
    {"version", "Metal has no #version: leave the line out", Form::sentence, Said::directive},
    {"extension", "Metal has no #extension: leave the line out", Form::sentence, Said::directive},
});
// Functions (GLSL 4.60, 8)
constexpr auto functions = std::to_array<Row>({
    {"atan", "atan(y, x) is atan2(y, x) in Metal", Form::sentence, Said::misfit},
    {"mod", "mod is fmod in Metal; where x may be negative, GLSL's is x - y * floor(x / y)", Form::sentence},
    {"inversesqrt", "rsqrt"}, {"roundEven", "rint"},
    {"radians", "radians(x) is x * M_PI_F / 180.0 in Metal", Form::sentence},
    {"degrees", "degrees(x) is x * 180.0 / M_PI_F in Metal", Form::sentence},
    {"lessThan", "lessThan(a, b) is a < b in Metal", Form::sentence},
    {"lessThanEqual", "lessThanEqual(a, b) is a <= b in Metal", Form::sentence},
    {"greaterThan", "greaterThan(a, b) is a > b in Metal", Form::sentence},
    {"greaterThanEqual", "greaterThanEqual(a, b) is a >= b in Metal", Form::sentence},
    {"equal", "equal(a, b) is a == b in Metal", Form::sentence},
    {"notEqual", "notEqual(a, b) is a != b in Metal", Form::sentence},
    {"matrixCompMult", "Metal multiplies matrices element by element in no function: multiply their columns", Form::sentence},
    {"outerProduct", "outerProduct(a, b) is float3x3(a * b.x, a * b.y, a * b.z) in Metal", Form::sentence},
    {"inverse", "Metal has no inverse(); a rotation's is its transpose()", Form::sentence},
    {"dFdx", "dfdx"}, {"dFdy", "dfdy"}, {"dFdxFine", "dfdx"}, {"dFdyFine", "dfdy"},
    {"dFdxCoarse", "dfdx"}, {"dFdyCoarse", "dfdy"},
    {"bitCount", "popcount"}, {"bitfieldReverse", "reverse_bits"}, {"bitfieldExtract", "extract_bits"},
    {"bitfieldInsert", "insert_bits"}, {"findLSB", "ctz"}, {"findMSB", "31 - clz"},
    {"floatBitsToInt", "as_type<int>"}, {"floatBitsToUint", "as_type<uint>"},
    {"intBitsToFloat", "as_type<float>"}, {"uintBitsToFloat", "as_type<float>"},
    {"texture", channel, Form::sentence}, {"texture2D", channel, Form::sentence},
    {"textureLod", channel, Form::sentence}, {"texture2DLod", channel, Form::sentence},
    {"textureCube", channel, Form::sentence}, {"texelFetch", channel, Form::sentence},
    {"textureSize", channel, Form::sentence},
    {"noise", noRandom, Form::sentence}, {"rand", noRandom, Form::sentence}, {"random", noRandom, Form::sentence},
    {"discard", "discard_fragment()"},
});
// HLSL
constexpr auto hlsl = std::to_array<Row>({
    {"lerp", "mix"}, {"frac", "fract"}, {"ddx", "dfdx"}, {"ddy", "dfdy"}, {"countbits", "popcount"},
    {"reversebits", "reverse_bits"}, {"firstbitlow", "ctz"}, {"mad", "fma"},
    {"rcp", "rcp(x) is 1.0 / x in Metal", Form::sentence},
    {"mul", "mul(a, b) is a * b in Metal", Form::sentence},
    {"asfloat", "as_type<float>"}, {"asint", "as_type<int>"}, {"asuint", "as_type<uint>"},
    {"clip", "clip(x) is if (x < 0.0) discard_fragment() in Metal", Form::sentence},
    {"tex2D", channel, Form::sentence},
});
// Constants
constexpr auto constants = std::to_array<Row>({
    {"PI", "M_PI_F"}, {"pi", "M_PI_F"}, {"M_PI", "M_PI_F"}, {"TAU", "2.0 * M_PI_F"}, {"TWO_PI", "2.0 * M_PI_F"},
    {"HALF_PI", "M_PI_2_F"},
});
// Inputs and outputs of a program (GLSL 4.60, 7.1)
constexpr auto inputsAndOutputs = std::to_array<Row>({
    {"gl_FragCoord", fromPixels, Form::sentence}, {"fragCoord", fromPixels, Form::sentence},
    {"gl_FragColor", returnsColour, Form::sentence}, {"fragColor", returnsColour, Form::sentence},
    {"FragColor", returnsColour, Form::sentence}, {"outColor", returnsColour, Form::sentence},
    {"gl_Position", "corner returns the position, in the Vertex of a grid episode", Form::sentence},
    {"gl_PointSize", "place returns the size as its z, in a particle episode", Form::sentence},
    {"gl_VertexID", "spawn and update get the particle's number as id", Form::sentence},
    {"vUv", "uv", Form::episode}, {"v_uv", "uv", Form::episode}, {"vTexCoord", "uv", Form::episode},
    {"v_texcoord", "uv", Form::episode},
});
// Names that shader sites and editors define
constexpr auto siteNames = std::to_array<Row>({
    {"mainImage", signature, Form::episode}, {"main", signature, Form::episode},
    {"iTime", "u.time", Form::episode}, {"iGlobalTime", "u.time", Form::episode},
    {"u_time", "u.time", Form::episode}, {"time", "u.time", Form::episode},
    {"iResolution", "u.resolution", Form::episode}, {"u_resolution", "u.resolution", Form::episode},
    {"resolution", "u.resolution", Form::episode},
    {"iMouse", "u.mouse", Form::episode}, {"u_mouse", "u.mouse", Form::episode},
    {"mouse", "u.mouse", Form::episode},
    {"iFrame", "u.frame", Form::episode}, {"iTimeDelta", "u.timeDelta", Form::episode},
    {"iFrameRate", "1.0 / u.timeDelta", Form::episode},
    {"iDate", "an episode does not know the date", Form::sentence},
    {"iSampleRate", "48000.0", Form::episode},
    {"iChannel0", "in.channel(0, uv) reads it, where shade takes Inputs in as its fourth argument", Form::sentence},
    {"iChannel1", "in.channel(1, uv) reads it, where shade takes Inputs in as its fourth argument", Form::sentence},
    {"iChannel2", "in.channel(2, uv) reads it, where shade takes Inputs in as its fourth argument", Form::sentence},
    {"iChannel3", "in.channel(3, uv) reads it, where shade takes Inputs in as its fourth argument", Form::sentence},
    {"iChannelResolution", "in.channel(0, uv) takes uv from 0 to 1, whatever the picture's size", Form::sentence},
});
// Habits without a name
constexpr auto habits = std::to_array<Row>({
    {"is not contextually convertible to 'bool'", "all(...) or any(...) makes one bool of a vector of them", Form::sentence, Said::fragment},
    {"expected '(' for function-style cast or type construction", "an array is written float a[3] = {1.0, 2.0, 3.0} in Metal", Form::sentence, Said::fragment},
    {"cannot initialize return object of type 'float4' (vector of 4 'float' values) with an lvalue of type 'float3'", "float4(c, 1.0) makes a colour with alpha of a float3 c", Form::sentence, Said::fragment},
    {"cannot initialize return object of type 'float4' (vector of 4 'float' values) with an rvalue of type 'float3'", "float4(c, 1.0) makes a colour with alpha of a float3 c", Form::sentence, Said::fragment},
    {"must reside in constant address space", "write constant before its type; variables must be inside functions", Form::sentence, Said::fragment},
    {"cannot assign to variable 'u'", "u cannot be changed: copy the value, as in float t = u.time", Form::sentence, Said::fragment},
    {"cannot assign to variable 'p'", "p cannot be changed: copy the value, as in float speed = p.speed", Form::sentence, Said::fragment},
});
// clang-format on

struct Topic {
    std::string_view title;
    std::span<const Row> rows;
};

constexpr std::array<Topic, 8> topics{{
    {"Types", types},
    {"Qualifiers and directives", qualifiers},
    {"Functions", functions},
    {"Names of HLSL", hlsl},
    {"Constants", constants},
    {"Inputs and outputs", inputsAndOutputs},
    {"Names of shader sites and editors", siteNames},
    {"Messages without a name", habits},
}};

std::string textOf(const Row& row) {
    if (row.form == Form::sentence)
        return std::string(row.instead);
    return std::string(row.name) + " is " + std::string(row.instead) +
           (row.form == Form::metal ? " in Metal" : " in an episode");
}

std::string find(std::string_view name, Said said) {
    for (const Topic& topic : topics)
        for (const Row& row : topic.rows)
            if (row.said == said && row.name == name)
                return textOf(row);
    return {};
}

std::string findFragment(std::string_view message) {
    for (const Row& row : habits)
        if (message.find(row.name) != std::string_view::npos)
            return textOf(row);
    return {};
}

// The text after `lead` in the message, up to the next quotation mark.
std::string_view quotedAfter(std::string_view message, std::string_view lead) {
    return message.starts_with(lead)
               ? message.substr(lead.size(), message.find('\'', lead.size()) - lead.size())
               : "";
}

} // namespace

std::string_view unknownName(std::string_view message) {
    for (const std::string_view lead :
         {"use of undeclared identifier '", "unknown type name '", "no template named '",
          "no type named '", "no member named '"})
        if (const std::string_view name = quotedAfter(message, lead); !name.empty())
            return name;
    // 'double' is not supported in Metal
    return message.find("' is not supported") != std::string_view::npos ? quotedAfter(message, "'")
                                                                        : "";
}

std::vector<HintTopic> hintTopics() {
    std::vector<HintTopic> found;
    for (const Topic& topic : topics) {
        found.push_back({.title = topic.title, .hints = {}});
        for (const Row& row : topic.rows)
            found.back().hints.push_back({.name = row.name,
                                          .instead = row.instead,
                                          .isSentence = row.form == Form::sentence});
    }
    return found;
}

std::string hintForName(std::string_view name) {
    return find(name, Said::unknown);
}

std::string hintOf(const Diagnostic& message, std::string_view line) {
    const std::string_view text = message.message;
    if (const std::string_view name = unknownName(text); !name.empty()) {
        // A signature that cannot be corrected word by word.
        const bool isSignature = name == "out" || name == "inout" || name == "in" || name == "vec4";
        return hintForName(isSignature && findWord(line, "mainImage") != std::string_view::npos
                               ? "mainImage"
                               : name);
    }
    if (const auto name = quotedAfter(text, "no matching function for call to '"); !name.empty())
        return find(name, Said::misfit);
    const auto at = static_cast<std::size_t>(std::max<std::int64_t>(message.column - 1, 0));
    // A type that the compiler read as a variable: "vec2 uv = ...".
    if (text.starts_with("expected ';' after expression"))
        return hintForName(wordBefore(line, std::min(at, line.size())));
    if (text == "invalid preprocessing directive")
        return find(wordAt(line, at), Said::directive);
    if (text.starts_with("invalid operands to binary expression") &&
        line.substr(std::min(at, line.size())).starts_with('%'))
        return "% is for integers; fmod(x, y) is for floats";
    return findFragment(text);
}

} // namespace tarnwick
