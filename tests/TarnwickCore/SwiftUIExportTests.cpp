#include "TarnwickCore/Episode/ReservedWords.h"
#include "TarnwickCore/Service/ServiceHosts.h"
#include "TarnwickCore/SwiftUIExport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <regex>
#include <set>

using namespace tarnwick;

namespace {

using Problem = SwiftUIExport::Problem;

constexpr std::string_view shade =
    "float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {\n"
    "    return float4(1.0);\n}\n";

std::string with(const std::vector<std::string>& names) {
    std::string episode;
    for (const std::string& name : names)
        episode += "// @param " + name + " 0.5 0 1\n";
    return episode.append(shade);
}

bool holds(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

std::vector<std::string> matches(const std::string& text, const std::string& expression) {
    const std::regex pattern(expression);
    std::vector<std::string> found;
    for (std::sregex_iterator match(text.begin(), text.end(), pattern), end; match != end; ++match)
        found.push_back((*match)[1]);
    return found;
}

// Swift without comments and string literals.
std::string codeOf(const std::string& swift) {
    return std::regex_replace(swift, std::regex(R"(//[^\n]*|"[^"\n]*")"), "");
}

bool isBalanced(const std::string& code) {
    const std::string openings = "([{", closings = ")]}";
    std::string open;
    for (const char character : code) {
        if (const auto which = openings.find(character); which != std::string::npos)
            open += closings[which];
        if (!holds(closings, {&character, 1}))
            continue;
        if (open.empty() || open.back() != character)
            return false;
        open.pop_back();
    }
    return open.empty() && std::ranges::count(code, '`') % 2 == 0;
}

// The properties of the view, with backquotes.
std::vector<std::string> propertiesOf(const std::string& swift) {
    return matches(codeOf(swift), R"(\bvar (`?\w+`?))");
}

void expectProperView(const std::string& swift) {
    EXPECT_TRUE(isBalanced(codeOf(swift))) << swift;
    std::set<std::string> names;
    for (std::string name : propertiesOf(swift)) {
        const bool isQuoted = std::erase(name, '`') == 2;
        EXPECT_TRUE(isQuoted == isSwiftKeyword(name)) << name;
        EXPECT_TRUE(names.insert(name).second) << name << " twice in\n" << swift;
    }
}

} // namespace

TEST(SwiftUIExport, refusesEpisodesThatCannotBeColourEffects) {
    struct Row {
        std::string episode;
        Problem::Reason reason;
        ShaderKind kind;
        std::string sentence;
    };
    const std::string inputs = "float4 shade(float2 uv, constant Params& p, Inputs in)";
    const std::string keeps = " shader keeps state between frames or draws geometry, which a "
                              "SwiftUI colour effect can't. Copy as SwiftUI works with fragment "
                              "shaders.";
    for (const Row& row :
         {Row{"// @particles 9\n" + inputs, Problem::Reason::kind, ShaderKind::particles,
              "A particles" + keeps},
          Row{"// @grid 9\n" + inputs, Problem::Reason::kind, ShaderKind::grid, "A grid" + keeps},
          Row{inputs, Problem::Reason::inputs, ShaderKind::fragment,
              "This shader reads Inputs (audio, images, the camera or the previous frame), which "
              "a SwiftUI colour effect doesn't have."}})
        try {
            SwiftUIExport::make(row.episode, "A");
            ADD_FAILURE() << row.episode;
        } catch (const Problem& problem) {
            EXPECT_EQ(problem.reason, row.reason);
            EXPECT_EQ(problem.kind, row.kind);
            EXPECT_EQ(problem.what(), row.sentence);
        }
}

TEST(SwiftUIExport, namesTheTypeAfterTheTitle) {
    struct Row {
        std::string title, name;
    };
    for (const Row& row :
         {Row{"Light through water", "LightThroughWater"}, Row{"12 - Light", "Light"},
          Row{"12·_.3d JSON-art", "Shader3dJSONArt"}, Row{"12", "Shader12"},
          Row{"12 ", "TarnwickShader"}, Row{"\xff\xfe!", "TarnwickShader"},
          Row{"a\xff"
              "b",
              "AB"},
          Row{"", "TarnwickShader"}, Row{"rose\u2028window's", "RoseWindowS"},
          Row{"Größe e\u0301clair", "GrosseEclair"}, Row{"Море", "More"}, Row{"☃ 5 ²", "Shader5"}})
        EXPECT_EQ(SwiftUIExport::typeName(row.title), row.name) << row.title;
}

TEST(SwiftUIExport, namesNoFunctionAfterAKeyword) {
    struct Row {
        std::string title, function;
    };
    for (const Row& row :
         {Row{"Rose window", "roseWindow"}, Row{"JSON", "jSON"}, Row{"While", "whileShader"},
          Row{"Float4x4", "float4x4Shader"}, Row{"Init", "initShader"}, Row{"Float5", "float5"}}) {
        const auto output = SwiftUIExport::make(shade, row.title);
        EXPECT_EQ(output.function, row.function);
        EXPECT_TRUE(holds(output.metal, "half4 " + row.function + "(float2 tw_position"));
        EXPECT_TRUE(holds(output.metal, "\n} // namespace tw_" + row.function + "\n"));
        EXPECT_TRUE(holds(output.swift, "ShaderLibrary.default." + row.function + "(.float2"));
        EXPECT_TRUE(
            holds(output.packageSwift, "ShaderLibrary.bundle(.module)." + row.function + "("));
    }
}

TEST(SwiftUIExport, passesTheDeclaredParameters) {
    const auto output = SwiftUIExport::make(
        "// @param speed 0.6 0.0 3.0 How fast\n// @param bands inf 1 inf\n" + std::string(shade),
        "Waves");
    EXPECT_TRUE(holds(output.metal, "struct Params {\n    float speed;\n    float bands;\n};\n\n"));
    EXPECT_TRUE(holds(output.metal, "float tw_time, float p_speed, float p_bands) {\n"));
    EXPECT_TRUE(holds(output.metal, "::Params p;\n    p.speed = p_speed;\n    p.bands = p_bands;\n"
                                    "    // SwiftUI's y"));
    EXPECT_TRUE(holds(output.swift, "    /// How fast (0 to 3)\n    var speed: Float\n"));
    EXPECT_TRUE(holds(output.swift, "init(speed: Float = 0.6, bands: Float = .infinity, "
                                    "isRunning: Bool = true)"));
    EXPECT_TRUE(holds(output.swift, ".float(twTime), .float(speed), .float(bands)))\n"));
    const auto none = SwiftUIExport::make(shade, "Waves");
    EXPECT_TRUE(holds(none.metal, "struct Params {\n    float unused;\n};\n"));
    EXPECT_TRUE(holds(none.metal, "float tw_time) {\n    tw_waves::Uniforms u;\n"));
    EXPECT_TRUE(holds(none.metal, "\n    p.unused = 0.0;\n"));
    EXPECT_TRUE(holds(none.swift, "View {\n    // The shader declares no parameters.\n"));
}

TEST(SwiftUIExport, changesReferencesToTheRecordsOnly) {
    const auto output = SwiftUIExport::make("float a(constant   Params &p, constant\nUniforms& u);"
                                            "// constant Uniforms*, xconstant Params& \xff\n"
                                            "constant ParamsOf& q",
                                            "A");
    EXPECT_TRUE(holds(output.metal, "float a(thread const Params&p, thread const Uniforms& u);"
                                    "// constant Uniforms*, xconstant Params& \ufffd\n"
                                    "constant ParamsOf& q\n\n} // namespace tw_a\n"));
}

TEST(SwiftUIExport, keepsTheTitleInItsComments) {
    const auto output = SwiftUIExport::make(shade, "Two\r\nlines\u2029\"more\" \xc3");
    EXPECT_TRUE(output.metal.starts_with("// Two lines \"more\" \ufffd, from Tarnwick (" +
                                         std::string(siteHost) +
                                         "), as a SwiftUI colour effect: "
                                         "TwoLinesMoreView.swift runs"));
    EXPECT_TRUE(holds(output.swift, "/// Two lines \"more\" \ufffd, a shader from"));
    expectProperView(output.swift);
}

// Every bare word in the view except members and labels.
TEST(SwiftUIExport, renamesParametersNamedLikeMembersOfTheView) {
    const auto plain = SwiftUIExport::make(shade, "Timeline");
    const std::string code = codeOf(plain.packageSwift);
    EXPECT_TRUE(holds(code, "SwiftUI.TimelineView("));
    std::vector<std::string> words = matches(code, R"((?:^|[^.\\#\w])(\w*[A-Za-z_]\w*)\b(?!:))");
    for (const char* word : {"_", "Self", "Type", "in", "where", "_twStart", "Body"})
        words.emplace_back(word);
    EXPECT_GT(words.size(), 40u);
    for (const std::string& word : words) {
        const auto output = SwiftUIExport::make(with({word, "p_" + word}), "Timeline");
        const std::vector<std::string> properties = propertiesOf(output.packageSwift);
        const bool isQuoted = properties[0] == "`" + word + "`" && isSwiftKeyword(word);
        EXPECT_TRUE(isQuoted || properties[0] == "p_p_" + word) << word << ": " << properties[0];
        EXPECT_EQ(properties[1], "p_" + word);
        EXPECT_TRUE(holds(output.metal, ", float p_" + word + ", float p_p_" + word + ")"));
        expectProperView(output.packageSwift);
    }
    expectProperView(SwiftUIExport::make(with(words), "Timeline").swift);
}

TEST(SwiftUIExport, makesTheViewOfThePackagePublic) {
    const auto output = SwiftUIExport::make(with({"speed", "in"}), "7. Waves");
    std::string view = std::regex_replace(output.packageSwift, std::regex("public "), "");
    view.replace(view.find("bundle(.module)"), 15, "default");
    EXPECT_EQ(view, output.swift);
    for (const char* member : {"struct WavesView: View", "init(speed", "var body: some View",
                               "var speed: Float", "var `in`: Float", "var isRunning = true"})
        EXPECT_TRUE(holds(output.packageSwift, "public " + std::string(member))) << member;
    EXPECT_TRUE(isBalanced(codeOf(output.packageManifest)));
    EXPECT_EQ(matches(output.packageManifest, "(Waves)").size(), 8u);
}
