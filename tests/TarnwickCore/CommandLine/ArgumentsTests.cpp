#include "TarnwickCore/CommandLine/Arguments.h"
#include "TarnwickCore/CommandLine/Help.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

std::vector<std::string_view> colours() {
    return {"red", "green"};
}

constexpr std::array<Option, 9> options{{
    {.name = "-o", .value = "OUT", .help = "the result", .values = FileName{}, .isRequired = true},
    {.name = "--rate",
     .value = "N",
     .help = "frame rate",
     .values = WholeNumber{.least = 1, .most = 1000},
     .byDefault = "30"},
    {.name = "--from", .value = "SECONDS", .help = "start", .values = Number{}, .byDefault = "0"},
    {.name = "--size", .value = "WxH", .values = SizeInPixels{}, .byDefault = "4x3"},
    {.name = "--colour", .value = "C", .values = OneOf{colours}, .byDefault = "red"},
    {.name = "--set", .value = "NAME=VALUE", .byDefault = "none", .isRepeatable = true},
    {.name = "--stages", .value = "FILE...", .byDefault = "none"},
    {.name = "--json", .help = "print JSON", .excludes = "--batch --stages"},
    {.name = "--batch", .help = "many", .needs = "--set"},
}};
constexpr CommandForm form{.operands = "EPISODE...", .options = options};

using Words = std::vector<const char*>;
using Texts = std::vector<std::string>;

Texts operandsOf(const Words& words) {
    const Arguments arguments(form, words);
    return {arguments.operands().begin(), arguments.operands().end()};
}

Texts valuesOf(const Words& words, std::string_view option) {
    const Arguments arguments(form, words);
    const auto values = arguments.values(option);
    return {values.begin(), values.end()};
}

TEST(Arguments, takeAnyWordAfterAnOptionAsItsValue) {
    EXPECT_EQ(valuesOf({"e", "-o", "--json"}, "-o"), Texts{"--json"});
    EXPECT_EQ(valuesOf({"e", "-o", "--"}, "-o"), Texts{"--"});
    EXPECT_EQ(valuesOf({"e", "-o=x"}, "-o"), Texts{"x"});
    EXPECT_EQ(valuesOf({"-o", "x", "--set=", "e"}, "--set"), Texts{""});
    EXPECT_EQ(valuesOf({"--set", "a=1", "-o", "[a,b]", "e", "--set=b=2"}, "--set"),
              (Texts{"a=1", "b=2"}));
}

TEST(Arguments, takeTheValueOfAJoinedOptionFromTheSameWord) {
    constexpr std::array<Option, 2> rows{{
        {.name = "-D",
         .value = "NAME",
         .byDefault = "none",
         .isRepeatable = true,
         .isJoined = true},
        {.name = "-O", .help = "fast"},
    }};
    const CommandForm compiler{.operands = "FILE", .options = rows};
    const Arguments arguments(compiler, Words{"-DA=1", "-D", "-DB", "f", "-D=C=2", "-O"});
    const auto values = arguments.values("-D");
    EXPECT_EQ(Texts(values.begin(), values.end()), (Texts{"A=1", "-DB", "C=2"}));
    EXPECT_TRUE(arguments.has("-O"));
    EXPECT_THROW(Arguments(compiler, Words{"-O3", "f"}), UsageError);
}

TEST(Arguments, endAListAtTheNextOptionOrTwoDashes) {
    EXPECT_EQ(valuesOf({"--stages", "a", "[b,c]", "-o", "x", "e"}, "--stages"),
              (Texts{"a", "[b,c]"}));
    EXPECT_EQ(operandsOf({"-o", "x", "--stages", "a", "--", "-e", "[b,c]", "--"}),
              (Texts{"-e", "[b,c]", "--"}));
}

TEST(Arguments, giveTheLastValueOrTheDefault) {
    const Arguments given(form, Words{"e", "-o", "x", "--rate", "24", "--rate", "60"});
    EXPECT_EQ(given.integerOf("--rate"), 60);
    EXPECT_EQ(given.numberOf("--from"), 0);
    EXPECT_EQ(given.textOf("--colour"), "red");
    EXPECT_EQ(given.wordsBeside("-o"), (std::vector<std::string_view>{"e", "24", "60"}));
}

TEST(Arguments, sayWhatIsWrongWithTheWords) {
    const std::vector<std::pair<Words, std::string>> rows{
        {{"e"}, "-o OUT is required: the result."},
        {{"-o", "x"}, "EPISODE... is required."},
        {{"e", "-o"}, "-o requires a value, OUT."},
        {{"e", "-o", ""}, "-o must be the name of a file or folder, not \"\"."},
        {{"e", "-ox"},
         "\"-ox\" is not an option; write -- before operands that begin with a dash."},
        {{"e", "--stages", "--json"}, "--stages requires a value, FILE...."},
        {{"e", "--json=yes"}, "--json takes no value."},
        {{"e", "--rate", "1001"}, "--rate must be a whole number from 1 to 1000, not \"1001\"."},
        {{"e", "--rate", "-1"}, "--rate must be a whole number from 1 to 1000, not \"-1\"."},
        {{"e", "--from", "nan"}, "--from must be a number, at least 0, not \"nan\"."},
        {{"e", "--from", "1e39"}, "--from must be a number, at least 0, not \"1e39\"."},
        {{"e", "--size", "4x"},
         "--size must be WIDTHxHEIGHT, each from 1 to 16384 pixels, not \"4x\"."},
        {{"e", "--size", "4x16385"},
         "--size must be WIDTHxHEIGHT, each from 1 to 16384 pixels, not \"4x16385\"."},
        {{"e", "--colour", "blue"}, "--colour must be one of red, green, not \"blue\"."},
        {{"e", "-o", "x", "--stages", "a", "--json"}, "--json and --stages exclude each other."},
        {{"e", "-o", "x", "--batch"}, "--batch requires --set."},
    };
    for (const auto& [words, sentence] : rows)
        try {
            const Arguments arguments(form, words);
            ADD_FAILURE() << sentence;
        } catch (const UsageError& error) {
            EXPECT_EQ(error.what(), sentence);
        }
    EXPECT_THROW(Arguments({.operands = ""}, Words{"e"}), UsageError);
    EXPECT_THROW(Arguments({.operands = "[E]"}, Words{"e", "f"}), UsageError);
}

TEST(Help, saysOfEachOptionItsValuesAndItsDefault) {
    EXPECT_EQ(helpText("draw", {.operands = "E", .options = std::span(options).first(2)}, "Draws."),
              "usage: draw [OPTION]... E\n\nDraws.\n\n"
              "  -o OUT    the result; required\n"
              "  --rate N  frame rate; from 1 to 1000; default: 30\n");
    const std::string word(31, 'a');
    EXPECT_EQ(wrapped(word + " " + word + " " + word + " " + word, 8),
              word + " " + word + "\n        " + word + " " + word);
}

} // namespace
} // namespace tarnwick
