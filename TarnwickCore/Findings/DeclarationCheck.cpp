#include "TarnwickCore/Findings/DeclarationCheck.h"

#include "TarnwickCore/Episode/ReservedWords.h"
#include "TarnwickCore/EpisodeMeta.h"
#include "TarnwickCore/Findings/Words.h"
#include "TarnwickCore/Forking.h"
#include "TarnwickCore/Params.h"
#include "TarnwickCore/ShaderAssembler.h"
#include "TarnwickCore/Text/Characters.h"
#include "TarnwickCore/Text/Lines.h"
#include "TarnwickCore/Text/Numbers.h"
#include "TarnwickCore/Text/Pattern.h"

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <string>

namespace tarnwick {
namespace {

constexpr std::string_view paramForm = "// @param name default min max description";

std::string inQuotes(std::string_view text) {
    const std::string_view shown = wholeCharacters(text, 40);
    return "'" + std::string(shown) + (shown.size() < text.size() ? "…'" : "'");
}

// A directive: its line, its key without the @, and the text after the key.
struct Directive {
    std::string_view line, key, value;
};

// The directive of a comment line; nothing for other lines.
std::optional<Directive> directiveOf(std::string_view line) {
    static const Pattern pattern(R"(^\s*//\s*@\s*([A-Za-z_][A-Za-z0-9_-]*)(.*)$)");
    if (line.find('@') == std::string_view::npos)
        return std::nullopt;
    const auto groups = pattern.firstMatch(line);
    if (!groups)
        return std::nullopt;
    return Directive{line, (*groups)[1], (*groups)[2]};
}

std::vector<std::string_view> wordsOf(std::string_view text) {
    static const Pattern pattern(R"(\S+)");
    std::vector<std::string_view> words;
    for (const auto& groups : pattern.allMatches(text))
        words.push_back(groups[0]);
    return words;
}

// The optimal string alignment distance: the number of letters to insert, remove, change, or
// exchange with a neighbour.
std::size_t distance(std::string_view one, std::string_view other) {
    std::vector<std::vector<std::size_t>> table(one.size() + 1,
                                                std::vector<std::size_t>(other.size() + 1));
    for (std::size_t i = 0; i <= one.size(); ++i)
        for (std::size_t j = 0; j <= other.size(); ++j) {
            if (i == 0 || j == 0) {
                table[i][j] = i + j;
                continue;
            }
            const std::size_t change = one[i - 1] == other[j - 1] ? 0 : 1;
            std::size_t least =
                std::min({table[i - 1][j] + 1, table[i][j - 1] + 1, table[i - 1][j - 1] + change});
            if (i > 1 && j > 1 && one[i - 1] == other[j - 2] && one[i - 2] == other[j - 1])
                least = std::min(least, table[i - 2][j - 2] + 1);
            table[i][j] = least;
        }
    return table[one.size()][other.size()];
}

std::string lowerCased(std::string_view text) {
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(), [](char one) {
        return one >= 'A' && one <= 'Z' ? static_cast<char>(one - 'A' + 'a') : one;
    });
    return lower;
}

std::vector<std::string_view> knownKeys() {
    std::vector<std::string_view> keys = EpisodeMeta::keyNames();
    keys.insert(keys.end(), {"param", "particles", "grid", "forked-from"});
    return keys;
}

// The known key most like `key`; empty if none is like it.
std::string_view nearKey(std::string_view key) {
    constexpr std::size_t longest = 32; // keys are short
    if (key.size() > longest)
        return "";
    std::string_view nearest;
    std::size_t least = key.size() < 5 ? 2 : 3; // at a greater distance it is another word
    for (const std::string_view known : knownKeys())
        if (const std::size_t far = distance(lowerCased(key), known); far < least) {
            least = far;
            nearest = known;
        }
    return nearest;
}

class Check {
  public:
    std::vector<Diagnostic> warnings(std::string_view source);

  private:
    void readLine(std::string_view line);
    void readDirective(const Directive& directive);
    void readParam(const Directive& directive);
    void readIgnoredParam(const Directive& directive);
    void readCount(const Directive& directive);
    void readKey(const Directive& directive);
    void readMisplaced(std::string_view line);
    void warn(std::string_view at, const std::string& message,
              Severity severity = Severity::warning);

    std::string_view physicalLine_; // a line as the compiler counts them
    std::int64_t number_ = 0;
    std::map<std::string, std::int64_t, std::less<>> params_,
        counts_; // the line of each declaration
    std::vector<Diagnostic> warnings_;
};

// Warns at `at`, a part of the line.
void Check::warn(std::string_view at, const std::string& message, Severity severity) {
    warnings_.push_back({.severity = severity,
                         .line = number_,
                         .column = at.data() - physicalLine_.data() + 1,
                         .message = message});
}

void Check::readIgnoredParam(const Directive& directive) {
    static const Pattern identifier(R"(\A[A-Za-z_][A-Za-z0-9_]*\z)");
    const std::string ignored = "@param is ignored: ";
    const std::vector<std::string_view> words = wordsOf(directive.value);
    if (words.empty())
        return warn(directive.key, ignored + "it has no name: " + std::string(paramForm));
    if (!identifier.matchesIn(words[0]))
        return warn(words[0], ignored + inQuotes(words[0]) +
                                  " is not a name (letters, digits and _, no digit first)");
    constexpr std::array<std::string_view, 4> places{"name", "default", "minimum", "maximum"};
    std::array<float, 4> numbers{};
    for (std::size_t i = 1; i < places.size(); ++i) {
        if (i >= words.size())
            return warn(words[0], ignored + "the " + std::string(places[i]) + " of " +
                                      inQuotes(words[0]) +
                                      " is missing: " + std::string(paramForm));
        const auto number = floatOf(words[i]);
        if (!number)
            return warn(words[i],
                        ignored + inQuotes(words[i]) + " is not a number (the " +
                            std::string(places[i]) + ")" +
                            (words[i].find(',') == std::string_view::npos
                                 ? ""
                                 : "; separate numbers by blanks, and decimals by a point"));
        numbers[i] = *number;
    }
    warn(words[3], ignored + "the maximum " + shortest(numbers[3]) +
                       " is not greater than the minimum " + shortest(numbers[2]));
}

void Check::readParam(const Directive& directive) {
    const std::vector<ParamDecl> read = ParamParser::parse(directive.line);
    if (read.empty())
        return readIgnoredParam(directive);
    const std::vector<std::string_view> words = wordsOf(directive.value);
    const ParamDecl& param = read[0];
    const auto [first, isNew] = params_.emplace(param.name, number_);
    if (!isNew)
        return warn(words[0], "@param is ignored: line " + std::to_string(first->second) +
                                  " declares " + inQuotes(param.name));
    if (isReservedMember(param.name))
        return warn(words[0],
                    inQuotes(param.name) + " is a reserved word and cannot name a parameter",
                    Severity::error);
    if (const auto written = floatOf(words[1]); written && *written != param.defaultValue)
        warn(words[1], "the default " + shortest(*written) + " is outside the range " +
                           shortest(param.min) + " to " + shortest(param.max) + ": " +
                           shortest(param.defaultValue) + " is used");
}

// @particles and @grid.
void Check::readCount(const Directive& directive) {
    const std::string key(directive.key), name = "@" + key;
    static const Pattern number(R"(^\s+([0-9]+)\s*$)");
    const auto groups = number.firstMatch(directive.value);
    if (!groups)
        return warn(directive.key,
                    name + " is ignored: it requires one whole number and nothing else, as in // " +
                        name + (key == "grid" ? " 64" : " 20000"));
    const auto [first, isNew] = counts_.emplace(key, number_);
    if (!isNew)
        return warn(directive.key, name + " is ignored: line " + std::to_string(first->second) +
                                       " has one already");
    const bool isGrid = key == "grid";
    const std::int64_t count = isGrid ? ShaderAssembler::gridSize(directive.line)
                                      : ShaderAssembler::particleCount(directive.line);
    if (count == 0)
        return warn((*groups)[1], name + " 0 has no effect");
    if (integerOf((*groups)[1]) != count)
        warn((*groups)[1], name + " is limited to " + std::to_string(count));
}

void Check::readKey(const Directive& directive) {
    const std::string name = "@" + std::string(directive.key);
    const std::string_view value = trimmed(directive.value);
    if (directive.key == "forked-from") {
        if (!ForkedFrom::parse(directive.line))
            warn(directive.key,
                 name + " is ignored: it requires an episode, as in // " + name + " episode-12");
        return;
    }
    if (!EpisodeMeta::takes(directive.key, value))
        warn(value.empty() ? directive.key : value,
             name +
                 (directive.key == "variations" ? " is partly ignored: it requires "
                                                : " is ignored: it requires ") +
                 std::string(EpisodeMeta::valueOf(directive.key)));
}

void Check::readDirective(const Directive& directive) {
    const std::vector<std::string_view> known = knownKeys();
    if (std::ranges::find(known, directive.key) == known.end()) {
        if (const std::string_view near = nearKey(directive.key); !near.empty())
            warn(directive.key, "'@" + std::string(directive.key) +
                                    "' is unknown and ignored; did you mean '@" +
                                    std::string(near) + "'?");
        return;
    }
    const bool isApart = *(directive.key.data() - 1) != '@';
    if (isApart)
        return warn(directive.key,
                    "@" + std::string(directive.key) + " is ignored: there is a blank after its @");
    if (directive.key == "param")
        readParam(directive);
    else if (directive.key == "particles" || directive.key == "grid")
        readCount(directive);
    else
        readKey(directive);
}

// Warns about a declaration that is valid only at the beginning of a // line.
void Check::readMisplaced(std::string_view line) {
    const std::string_view before = line.substr(0, line.find('@'));
    const std::string_view mark = trimmed(before);
    const bool isCommentedOut = mark.starts_with("//") && !mark.starts_with("///");
    if (isCommentedOut || mark.find_first_of("/*") == std::string_view::npos)
        return;
    std::string rest(line.substr(before.size()));
    if (const std::size_t end = rest.find("*/"); end != std::string::npos)
        rest.resize(end);
    const std::string moved = "// " + rest;
    if (!ParamParser::parse(moved).empty() || ShaderAssembler::particleCount(moved) > 0 ||
        ShaderAssembler::gridSize(moved) > 0)
        warn(line.substr(before.size()), "this declaration is ignored: it must begin a // line");
}

void Check::readLine(std::string_view line) {
    if (line.find('@') == std::string_view::npos)
        return;
    if (const auto directive = directiveOf(line))
        readDirective(*directive);
    else
        readMisplaced(line);
}

std::vector<Diagnostic> Check::warnings(std::string_view source) {
    for (const std::string_view line : compilerLines(source)) {
        physicalLine_ = line;
        ++number_;
        // The parsers accept more line breaks than the compiler.
        for (const std::string_view part : linesOf(line))
            readLine(part);
    }
    if (counts_.contains("grid") && counts_.contains("particles"))
        warnings_.push_back({.severity = Severity::warning,
                             .line = counts_["particles"],
                             .column = 1,
                             .message = "@particles is ignored: line " +
                                        std::to_string(counts_["grid"]) +
                                        " makes this a grid episode"});
    std::ranges::stable_sort(warnings_, {}, &Diagnostic::line);
    return std::move(warnings_);
}

} // namespace

std::vector<Diagnostic> declarationWarnings(std::string_view source) {
    return Check().warnings(source);
}

} // namespace tarnwick
