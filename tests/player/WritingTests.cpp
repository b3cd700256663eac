// Completion and help while an episode is written.
#include "player/Writing/CallHelp.h"
#include "player/Writing/Completion.h"
#include "player/Writing/TextDiff.h"
#include "player/Writing/WritingNames.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <random>

namespace tarnwick::player {
namespace {

// A text with its cursor where the mark was.
struct Marked {
    std::string text;
    std::size_t at;

    explicit Marked(std::string marked) : text(std::move(marked)), at(text.find('|')) {
        text.erase(at, 1);
    }
};

std::vector<std::string> namesAt(const std::string& marked,
                                 CompletionCause cause = CompletionCause::typing) {
    const Marked place(marked);
    std::vector<std::string> names;
    for (const Completion& one : completionsAt(place.text, place.at, cause).list)
        names.push_back(one.name);
    return names;
}

bool offers(const std::string& marked, const std::string& name) {
    return std::ranges::count(namesAt(marked), name) == 1;
}

const std::string episode = R"(// @param speed 1 0 4 how fast
#define RINGS 7
struct Ring { float radius; float3 colour; float2 at(float t) const { return float2(t); } };
// A number from a place. More about it.
float hash21(float2 place) { return fract(sin(dot(place, float2(12.9, 78.2))) * 43758.5); }
float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Inputs in) {
    Ring ring = Ring{0.5, float3(1)};
    auto light = normalize(ring.colour) * 2.0;
    float weights[4] = {1, 2, 3, 4};
    for (int index = 0; index < 4; ++index) { float inner = weights[index]; HERE }
    AFTER
}
)";

std::string with(const std::string& here, const std::string& after = "") {
    std::string text = episode;
    text.replace(text.find("HERE"), 4, here);
    text.replace(text.find("AFTER"), 5, after);
    return text;
}

TEST(Completion, knowsEnumerationsAndAliasesOfTheEpisode) {
    const std::string plain = "enum Pane { field, petal = int(3), eye };\nvoid f(Pane a) { ";
    EXPECT_TRUE(offers(plain + "int b = pe| }", "petal"));
    EXPECT_EQ(namesAt(plain + "a = Pane::|"), (std::vector<std::string>{"field", "petal", "eye"}));
    EXPECT_TRUE(namesAt(plain + "a.| }").empty());
    const std::string scoped = "enum class Pane : uint { field, petal };\nvoid f() { ";
    EXPECT_EQ(namesAt(scoped + "Pane::pe| }"), std::vector<std::string>{"petal"});
    EXPECT_FALSE(offers(scoped + "int b = pe| }", "petal"));
    EXPECT_TRUE(offers("using Place = float3; void f() { Place a; a.| }", "xyz"));
    EXPECT_TRUE(offers("typedef float3 Place; void f(Place a) { a.| }", "xyz"));
    EXPECT_EQ(namesAt("struct A { float2 x; }; void f() { auto q = A{}; q.| }"),
              std::vector<std::string>{"x"});
    EXPECT_TRUE(offers("constexpr sampler s(address::|", "clamp_to_edge"));
}

TEST(Completion, offersNamesOfEpisodeHostLibraryAndLanguage) {
    for (const auto& [typed, name] : {std::pair("has|", "hash21"),
                                      {"Rin|", "Ring"},
                                      {"RIN|", "RINGS"},
                                      {"inde|", "index"},
                                      {"inn|", "inner"},
                                      {"weig|", "weights"},
                                      {"Unif|", "Uniforms"},
                                      {"smo|", "smoothstep"},
                                      {"SMOOTHS|", "smoothstep"},
                                      {"M_P|", "M_PI_F"},
                                      {"textur|", "texture2d"},
                                      {"retu|", "return"},
                                      {"floa|", "float3x3"}})
        EXPECT_TRUE(offers(with(typed), name)) << typed;
    EXPECT_FALSE(offers(with("", "inn|"), "inner")) << "after its block";
    EXPECT_FALSE(offers(with("", "inde|"), "index")) << "after its loop";
}

TEST(Completion, offersMembersByTheTypeOfTheExpression) {
    for (const auto& [typed, name] : {std::pair("u.|", "resolution"),
                                      {"u.mo|", "mouse"},
                                      {"p.|", "speed"},
                                      {"ring.|", "radius"},
                                      {"ring.at(1).|", "xy"},
                                      {"ring.colour.|", "rgb"},
                                      {"light.|", "xyz"},
                                      {"weights[1 + 2] * uv.|", "xy"},
                                      {"(uv - u.mouse).|", "y"},
                                      {"in.|", "channel"},
                                      {"in.channel0.|", "sample"},
                                      {"in.channel(0, uv).|", "rgba"},
                                      {"in.channel0.sample(s, uv).|", "xyzw"},
                                      {"filter::|", "linear"},
                                      {"precise::si|", "sin"},
                                      {"mix(uv, uv, 0.5).|", "xy"}})
        EXPECT_TRUE(offers(with(typed), name)) << typed;
    EXPECT_FALSE(offers(with("uv.|"), "xyz")) << "two components";
    EXPECT_TRUE(namesAt(with("length(uv).|")).empty()) << "a scalar has no members";
    EXPECT_TRUE(offers("struct V { float4 p [[po|", "position"));
}

TEST(Completion, doesNotDisturb) {
    for (const char* typed : {"// smo|", "/* smo|", "\"smo|", "float smo|", "float3 ve|", "12|",
                              "1.|", "s|", "#include <met|", "auto li|", "smoothstep|"})
        EXPECT_TRUE(namesAt(typed).empty()) << typed;
    EXPECT_FALSE(namesAt("s|", CompletionCause::request).empty());
    EXPECT_FALSE(namesAt("float a; /* x */ smo|").empty());
}

TEST(CallHelp, knowsTheCallAroundThePlaceAndItsArgument) {
    const auto helpAt = [](const std::string& marked) {
        const Marked place(marked);
        return callAround(place.text, place.at);
    };
    const auto mix = helpAt(with("float a = mix(max(1.0, 2.0), 3.0, |"));
    ASSERT_TRUE(mix);
    EXPECT_TRUE(mix->signatures[0].starts_with("T mix(T x, T y, T z)")) << mix->signatures[0];
    EXPECT_EQ(mix->argument, 2u);
    EXPECT_NE(mix->sentence, "");
    const auto own = helpAt(with("hash21((uv + |"));
    ASSERT_TRUE(own);
    EXPECT_EQ(own->signatures, std::vector<std::string>{"float hash21(float2 place)"});
    EXPECT_EQ(own->sentence, "A number from a place.");
    const auto member = helpAt(with("in.channel0.sample(s, |"));
    ASSERT_TRUE(member);
    EXPECT_EQ(member->argument, 1u);
    for (const char* none : {"if (|", "float3(1, |", "mix(1, 2, 3)|", "// mix(|", "mix(1; |"})
        EXPECT_FALSE(helpAt(none)) << none;
    const Marked name(with("float b = smooth|step(0.0, 1.0, 0.5);"));
    ASSERT_TRUE(functionAt(name.text, name.at));
    EXPECT_EQ(functionAt(name.text, name.at)->argument, std::nullopt);
}

TEST(CallHelp, findsArgumentsInSignatures) {
    const std::string text = "float4 sample(sampler s, texture2d<float, access> t [, int2 offset])";
    const auto part = [&](std::size_t argument) {
        const auto [begin, end] = argumentRange(text, argument);
        return text.substr(begin, end - begin);
    };
    EXPECT_EQ(part(0), "sampler s");
    EXPECT_EQ(part(1), "texture2d<float, access> t [");
    EXPECT_EQ(part(2), "int2 offset]");
    EXPECT_EQ(part(3), "");
}

// Each prefix of texts that were cut and joined at random is read without failing, in time.
TEST(Completion, acceptsUnfinishedTexts) {
    std::mt19937 random(7);
    const std::string all = with("a.b(c[1]).d", "float4 x = {") + "\xff\x80{([<struct enum class";
    for (int round = 0; round < 300; ++round) {
        std::string text = all.substr(random() % all.size());
        text += all.substr(0, random() % all.size());
        const std::size_t at = random() % (text.size() + 1);
        for (const auto cause : {CompletionCause::typing, CompletionCause::request})
            EXPECT_LE(completionsAt(text, at, cause).from, at);
        callAround(text, at);
        functionAt(text, at);
    }
}

TEST(TextDiff, joinsToBothTexts) {
    std::mt19937 random(3);
    const auto textOf = [&] {
        std::string text;
        for (std::size_t line = random() % 12; line > 0; --line)
            text += std::string(1, static_cast<char>('a' + random() % 4)) + "\n";
        return text;
    };
    for (int round = 0; round < 500; ++round) {
        const std::string before = textOf(), after = textOf();
        std::string old, now;
        for (const DiffLine& line : textDiff(before, after)) {
            if (line.kind != DiffLine::Kind::added)
                old += std::string(line.text) + "\n";
            if (line.kind != DiffLine::Kind::removed)
                now += std::string(line.text) + "\n";
        }
        ASSERT_EQ(old, before);
        ASSERT_EQ(now, after);
    }
}

TEST(LibraryNames, describeEveryFunction) {
    std::size_t functions = 0;
    for (const msl::LibraryName& row : msl::libraryNames()) {
        if (row.kind != msl::LibraryName::Kind::function)
            continue;
        ++functions;
        EXPECT_NE(row.sentence, "") << row.name;
        EXPECT_NE(row.signatures.find(std::string(row.name) + "("), std::string_view::npos)
            << row.name;
    }
    EXPECT_GT(functions, 150u);
    EXPECT_TRUE(std::ranges::is_sorted(msl::libraryNames(), {}, [](const msl::LibraryName& row) {
        return std::pair(row.owner, row.name);
    }));
    for (const auto& [owner, name] : {std::pair{"gradient2d", "dPdx"},
                                      {"min_lod_clamp", "lod"},
                                      {"intersector", "flags"},
                                      {"", "column_list"}})
        EXPECT_EQ(libraryRow(owner, name), nullptr) << "not for programs: " << name;
    EXPECT_NE(libraryRow("intersector", "intersect"), nullptr); // a template
    ASSERT_NE(libraryRow("texture2d", "sample"), nullptr);
    EXPECT_TRUE(libraryRow("texture2d", "sample")
                    ->signatures.starts_with("float4 sample(sampler s, float2 at"));
}

} // namespace
} // namespace tarnwick::player
