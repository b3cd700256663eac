// One session of the front end parses many programs, and takes other numbers into the last one. The
// code must be that of a program parsed alone.
#include "tests/TarnwickMSL/FrontEnd/Parsing.h"

#include <gtest/gtest.h>
#include <llvm/IR/LLVMContext.h>
#include <llvm/IR/Module.h>
#include <llvm/Support/raw_ostream.h>

#include <algorithm>
#include <regex>

namespace tarnwick::msl {
namespace {

const StandardLibrary& library() {
    static const StandardLibrary only = StandardLibrary::build();
    return only;
}

struct Result {
    std::string code; // the module as text, and the messages
    bool isParsed = false;
};

Result result(const std::string& program) {
    llvm::LLVMContext context;
    StepTimes times;
    const Parsed parsed = parse(program, library(), context, {.times = &times});
    std::string text = parsed.messages + "\n";
    llvm::raw_string_ostream out(text);
    if (parsed.module)
        parsed.module->print(out, nullptr);
    const bool isParsed =
        std::ranges::find(times.rows(), "parse", &StepTimes::Row::step) != times.rows().end();
    return {std::move(text), isParsed};
}

// Without programs before: an error ends the session.
Result alone(const std::string& program) {
    result("error");
    return result(program);
}

// Appends a digit to each decimal fraction, "0.5" to "0.53".
std::string withOtherNumbers(const std::string& program) {
    static const std::regex fraction(R"([^\w.](\d+\.\d+)(?![\w.])|[^\w.](\d+\.\d+)[fh]\b)");
    const std::string code = codeAlone(program);
    std::string changed;
    std::size_t done = 0;
    for (std::sregex_iterator match(code.begin(), code.end(), fraction), end; match != end;
         ++match) {
        const auto& number = (*match)[1].matched ? (*match)[1] : (*match)[2];
        const auto place = static_cast<std::size_t>(number.second - code.begin());
        changed += program.substr(done, place - done) + "3";
        done = place;
    }
    return changed + program.substr(done);
}

TEST(Session, givesEachProgramTheCodeThatItHasAlone) {
    std::vector<std::pair<std::string, std::string>> programs = corpus();
    std::vector<std::string> codes;
    for (const auto& [name, program] : programs)
        codes.push_back(alone(program).code);
    for (std::size_t i = 0; i < programs.size(); ++i)
        EXPECT_EQ(result(programs[i].second).code, codes[i]) << programs[i].first;
    for (std::size_t i = programs.size(); i-- > 0;)
        EXPECT_EQ(result(programs[i].second).code, codes[i]) << programs[i].first;
}

TEST(Session, givesOtherNumbersTheCodeThatTheyHaveAlone) {
    int changed = 0, taken = 0;
    for (const auto& [name, program] : corpus()) {
        const std::string other = withOtherNumbers(program);
        if (other == program)
            continue;
        result(program);
        const Result found = result(other);
        EXPECT_EQ(found.code, alone(other).code) << name;
        ++changed;
        taken += !found.isParsed;
    }
    EXPECT_GT(taken * 3, changed) << "Many programs have nothing but plain numbers.";
}

std::string kernel(const std::string& before, const std::string& body) {
    return "#include <metal_stdlib>\nusing namespace metal;\n" + before +
           "\nkernel void k(device float* out [[buffer(0)]], uint i [[thread_position_in_grid]]) "
           "{\n" +
           body + "\n}\n";
}

// A kernel whose text has a number in the place of each `@`, and another number for it.
struct Edit {
    std::string declarations, body, before, after;
    bool isTaken = false;
    std::string with(const std::string& number) const {
        return std::regex_replace(kernel(declarations, body), std::regex("@"), number);
    }
};

TEST(Session, parsesAgainWhereANumberDecidesMoreThanCode) {
    const Edit edits[] = {
        {"", "out[i] = @;", "0.5", "1.25e3", true},
        {"", "out[i] = @;", "0.5h", "7.0h", true},
        {"constant float a = @; constant float2 b = float2(a, 1.0) * @;", "out[i] = a + b.x;",
         "0.5", "0.7", true},
        {"float f(float x = @) { return x; }", "out[i] = f(); // @", "0.5", "0.25", true},
        {"", "out[i] = 1@e1f-@;", ".5", ".25", true},
        {"", "out[i] = -@+2.0;", "0.5", "0.5e-1", true},
        {"", "out[i] = 1.0; // @", "0.5", "0.25"},
        {"", "out[i] = /* @ */ 1.0;", "0.5", "0.25"},
        {"", "out[i] = @;", "0.5", "0.5f"},
        {"", "out[i] = @;", "0.5", "1"},
        {"", "out[i] = @;", "0.5", "\n0.7"},
        {"", "out[i] = @;", "0.5", "1e40"},
        {"", "out[i] = @;", "0.5", "1e-44"},
        {"#define SIZE @\n", "out[i] = SIZE;", "0.5", "0.7"},
        {"#define TWICE(x) (x + x##f)\n", "out[i] = TWICE(@);", "0.5", "0.7"},
        {"constexpr constant float a = @;", "float b[int(a)] = {}; out[i] = b[i];", "2.5", "3.5"},
        {"constexpr float f() { return @; }", "float b[int(f())] = {}; out[i] = b[i];", "2.5",
         "3.5"},
        {"", "auto f = [] { return @; }; float b[int(f())] = {}; out[i] = b[i];", "2.5", "3.5"},
        {"template <int N> float f() { return N; }", "out[i] = f<int(@)>();", "2.5", "3.5"},
        {"static_assert(@ < 1.0, \"\");", "out[i] = 0;", "0.5", "1.5"},
        {"enum { a = int(@) };", "out[i] = a;", "2.5", "3.5"},
        {"constant int a = int(@);", "float b[a] = {}; out[i] = b[i];", "2.5", "3.5"},
        {"float f() { while (@ > 1.0) { } }", "out[i] = f();", "1.5", "0.5"},
    };
    for (const Edit& edit : edits) {
        const std::string changed = edit.with(edit.after);
        result(edit.with(edit.before));
        const Result found = result(changed);
        EXPECT_EQ(found.code, alone(changed).code) << changed;
        EXPECT_EQ(found.isParsed, !edit.isTaken) << changed;
    }
}

// One number changes the places of those after it.
TEST(Session, takesOneNumberAfterTheOther) {
    auto program = [](const std::string& a, const std::string& b, const std::string& c) {
        return kernel("constant float first = " + a + ";",
                      "out[i] = first + " + b + "; /* 0.5 */ out[i] *= " + c + ";");
    };
    const std::string texts[] = {
        program("0.5", "0.5", "0.5"),       program("0.5", "0.625", "0.5"),
        program("0.5", "0.625", "7.0"),     program("2.0e-3", "0.625", "7.0"),
        program("2.0e-3", "0.625", "0.75"), program("4.5", "1.5", "3.25"),
        program("4.5", "1.0", "3.25"),      program("4.5", "1.0", "0.0009765625"),
    };
    std::vector<std::string> codes;
    for (const std::string& text : texts)
        codes.push_back(alone(text).code);
    result(texts[0]);
    for (std::size_t i = 1; i < std::size(texts); ++i) {
        const Result found = result(texts[i]);
        EXPECT_EQ(found.code, codes[i]) << texts[i];
        EXPECT_FALSE(found.isParsed) << texts[i];
    }
}

// Each changes what the next program could see.
TEST(Session, forgetsWhatAProgramDeclares) {
    const std::string probe =
        kernel("#ifdef SIZE\n#error SIZE\n#endif\nfloat sq(float x) { return x * x; }\n"
               "enum E { first }; struct S { float2 v; };",
               "S s{{1, 2}}; out[i] = max(s.v.x, sq(2)) + first + clamp(0.5, 0.0, 1.0) * M_PI_F;");
    const std::string code = alone(probe).code;
    for (const std::string before :
         {"#define SIZE 1\n#define sq(x) ((x) * (x))\n",
          "enum { first = 7, S }; int sq(int x) { return x; }\n",
          "namespace metal { float clamp(float, float, double) = delete; }\n",
          "namespace metal { template <> struct is_same<int, float> { enum { value = 1 }; }; }\n",
          "#undef M_PI_F\n#define M_PI_F 3\n", "#pragma clang diagnostic ignored \"-Wunused\"\n",
          "struct T { friend float sq(T); };\n", "extern \"C\" { float sq(float x); }\n",
          "namespace { int first = 1; }\n", "float sq(float x) { return y; }\n",
          "#include <simd/simd.h>\nsimd_float3 sq;\n", "using metal::max; typedef float2 S;\n"}) {
        alone(kernel(before, "out[i] = 1;"));
        EXPECT_EQ(result(probe).code, code) << before;
    }
}

// Clang looks for a misspelt name in all types that were read, also by programs before.
TEST(Session, guessesNamesAsForAProgramAlone) {
    const std::string misspelt = kernel("float f(float x) { levels.first = x; return x; }", "");
    const std::string expected = alone(misspelt).code;
    alone(kernel("", "out[i] = quad_sum(int(i));"));
    EXPECT_EQ(result(misspelt).code, expected);
}

} // namespace
} // namespace tarnwick::msl
