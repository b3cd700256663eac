// The changes that the target Compiler makes to programs.
#include "fuzz/Grammar/Mutations.h"
#include "fuzz/Grammar/Pieces.h"
#include "fuzz/Grammar/Tokens.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>

namespace tarnwick::fuzz {
namespace {

constexpr std::string_view program = R"(#include <metal_stdlib> // the library
using namespace metal;
struct Pair { float2 a; int b[3]; };
float sum(float x, float y) { float z = x + y * 2.0e-3f; return z; }
kernel void k(device float* out [[buffer(0)]], uint i [[thread_position_in_grid]]) {
    Pair p = {float2(1.0), {1, 2, 3}};
    for (int n = 0; n < 4; ++n) {
        if (out[i] > 0.5) { out[i] -= p.a.x; } else out[i] = sum(p.a.y, 3.0);
        /* } */
        p.b[n % 3] <<= 1;
    }
}
)";

std::vector<std::string> corpus() {
    std::vector<std::string> texts;
    for (const auto& entry : std::filesystem::directory_iterator(FUZZ_PROGRAMS)) {
        std::ifstream file(entry.path());
        texts.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }
    std::ranges::sort(texts);
    return texts;
}

std::vector<std::string> textsOf(const Program& of, const std::vector<Piece>& pieces) {
    std::vector<std::string> texts;
    for (const Piece& piece : pieces)
        texts.emplace_back(of.textOf(piece));
    return texts;
}

// How often each bracket is open at the end of the code.
std::map<char, int> open(std::string_view text) {
    std::map<char, int> counts;
    for (const Token& token : tokensOf(text))
        if (token.kind == TokenKind::open)
            ++counts[token.text[0]];
        else if (token.kind == TokenKind::close)
            --counts[token.is(")") ? '(' : token.is("]") ? '[' : '{'];
    std::erase_if(counts, [](const auto& one) { return one.second == 0; });
    return counts;
}

} // namespace

TEST(Tokens, joinedAreTheText) {
    std::vector<std::string> texts = corpus();
    texts.insert(texts.end(), {"", "\"", "'a", "/* open", "// \\\nmore", "1.e+", ".5.", "#", "a#b",
                               "\x80\xff(", "<<=>>...->*::", std::string("\0 a", 3)});
    for (const std::string& text : texts) {
        std::string joined;
        for (const Token& token : tokensOf(text)) {
            EXPECT_FALSE(token.text.empty());
            joined += token.text;
        }
        EXPECT_EQ(joined, text);
    }
}

TEST(Pieces, ofAProgramAreItsParts) {
    const Program whole(program);
    EXPECT_EQ(whole.declarations.size(), 5u);
    const auto statements = textsOf(whole, whole.statements);
    for (const char* one :
         {"float2 a;", "return z;", "out[i] -= p.a.x;", "p.b[n % 3] <<= 1;",
          "if (out[i] > 0.5) { out[i] -= p.a.x; } else out[i] = sum(p.a.y, 3.0);"})
        EXPECT_EQ(std::ranges::count(statements, one), 1) << one;
    const auto expressions = textsOf(whole, whole.expressions);
    for (const char* one : {"x + y * 2.0e-3f", "sum(p.a.y, 3.0)", "p.a.y", "out[i] > 0.5", "n < 4"})
        EXPECT_GE(std::ranges::count(expressions, one), 1) << one;
    for (const char* one : {"buffer(0)", "Pair", "float", "sum"})
        EXPECT_EQ(std::ranges::count(expressions, one), 0) << one;
    EXPECT_EQ(whole.with(whole.declarations.front(), "").find("#include"), std::string::npos);
}

TEST(Pieces, ofUnpairedBracketsAreWithinTheText) {
    for (const std::string_view text : {"{ a; ( }", "}", "f(((", "[[x", "{ {", ")(", "a { ; b"}) {
        const Program whole(text);
        for (const auto* pieces : {&whole.declarations, &whole.statements, &whole.expressions})
            for (const Piece& piece : *pieces)
                EXPECT_TRUE(piece.first < piece.last && piece.last <= whole.tokens.size()) << text;
    }
}

TEST(Mutations, changeProgramsAndKeepMostBracketsPaired) {
    int unchanged = 0, unpaired = 0, rounds = 0;
    const std::vector<std::string> texts = corpus();
    Random random(1);
    for (std::size_t at = 0; at + 1 < texts.size(); at += 4) {
        for (const std::string& made : {mutated(texts[at], texts[at + 1], random),
                                        crossed(texts[at], texts[at + 1], random)}) {
            ++rounds;
            unchanged += made == texts[at];
            unpaired += open(made) != open(texts[at]);
        }
    }
    EXPECT_LT(unchanged, rounds / 8);
    EXPECT_LT(unpaired, rounds / 10);
}

TEST(Mutations, areTheSameFromTheSameSeed) {
    for (unsigned seed = 0; seed < 50; ++seed) {
        Random first(seed), second(seed);
        EXPECT_EQ(mutated(program, program, first), mutated(program, program, second));
    }
}

TEST(Mutations, acceptAnyBytes) {
    Random random(3);
    for (int round = 0; round < 300; ++round) {
        std::string text(random.below(40), '\0');
        for (char& byte : text)
            byte = static_cast<char>(random.oneIn(2)
                                         ? random.below(256)
                                         : std::string_view("{}()[];,=#\"/*")[random.below(13)]);
        mutated(text, program, random);
        crossed(text, program, random);
        crossed(program, text, random);
    }
}

} // namespace tarnwick::fuzz
