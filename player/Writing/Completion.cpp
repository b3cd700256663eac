#include "player/Writing/Completion.h"

#include "TarnwickCore/Editor/MSLSyntax.h"
#include "TarnwickCore/Findings/Words.h"
#include "player/Writing/ExpressionTypes.h"

#include <algorithm>
#include <array>
#include <set>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr std::size_t shortestTyped = 2; // letters

char lower(char one) {
    return one >= 'A' && one <= 'Z' ? static_cast<char>(one + 32) : one;
}

bool startsWith(std::string_view name, std::string_view word) {
    return name.size() >= word.size() &&
           std::equal(word.begin(), word.end(), name.begin(),
                      [](char a, char b) { return lower(a) == lower(b); });
}

std::string firstLine(std::string_view lines) {
    return std::string(lines.substr(0, lines.find('\n')));
}

// Collects the names that begin with the word; the first of the same name counts.
class Collector {
  public:
    explicit Collector(std::string_view word) : word_(word) {}

    void add(std::string_view name, CompletionKind kind, std::string_view detail = {},
             std::string_view sentence = {}) {
        if (startsWith(name, word_) && names_.emplace(name).second)
            list.push_back({std::string(name), kind, std::string(detail), std::string(sentence)});
    }
    void add(const SourceFunction& one, CompletionKind kind) {
        add(one.name, kind, one.signature, one.sentence);
    }
    void add(const msl::LibraryName& row) {
        add(row.name, kinds.at(static_cast<std::size_t>(row.kind)), firstLine(row.signatures),
            row.sentence);
    }
    // Names in the letters of the word first, then by name.
    void sortFrom(std::size_t first) {
        std::stable_sort(list.begin() + static_cast<std::ptrdiff_t>(first), list.end(),
                         [this](const Completion& a, const Completion& b) {
                             const bool isA = a.name.starts_with(word_);
                             const bool isB = b.name.starts_with(word_);
                             return isA != isB ? isA : a.name < b.name;
                         });
    }

    std::vector<Completion> list;

  private:
    // Of msl::LibraryName::Kind.
    static constexpr std::array<CompletionKind, 6> kinds{
        CompletionKind::function, CompletionKind::type,     CompletionKind::member,
        CompletionKind::constant, CompletionKind::constant, CompletionKind::attribute};

    std::string_view word_;
    std::set<std::string, std::less<>> names_;
};

void addComponents(std::string_view type, Collector& found) {
    const VectorShape shape = vectorShape(type);
    if (shape.components < 2)
        return;
    for (const std::string_view letters : {"xyzw", "rgba"}) {
        for (std::size_t one = 0; one < shape.components; ++one)
            found.add(letters.substr(one, 1), CompletionKind::member, shape.element);
        for (std::size_t size = 2; size <= shape.components; ++size)
            found.add(letters.substr(0, size), CompletionKind::member,
                      std::string(shape.element) + std::to_string(size));
    }
}

void addMembers(const WritingNames& names, std::string_view type, Collector& found) {
    addComponents(type, found);
    if (const SourceRecord* record = names.record(typeName(type));
        record != nullptr && !record->isEnumeration) {
        for (const SourceVariable& one : record->variables)
            found.add(one.name, CompletionKind::member, one.type);
        for (const SourceFunction& one : record->functions)
            found.add(one, CompletionKind::member);
    }
    for (const msl::LibraryName& row : libraryRows(typeName(type)))
        if (row.kind == msl::LibraryName::Kind::member)
            found.add(row);
}

void addQualified(const WritingNames& names, std::string_view owner, Collector& found) {
    const bool isSpace = owner == "metal" || owner == "fast" || owner == "precise";
    for (const msl::LibraryName& row : libraryRows(isSpace ? "" : owner))
        if (isSpace || row.kind == msl::LibraryName::Kind::enumerator)
            found.add(row);
    if (const SourceRecord* record = names.own.record(owner))
        for (const SourceVariable& one : record->variables)
            found.add(one.name,
                      record->isEnumeration ? CompletionKind::constant : CompletionKind::member,
                      one.type);
}

void addSource(const SourceNames& names, std::size_t at, Collector& found) {
    for (auto one = names.variables.rbegin(); one != names.variables.rend(); ++one)
        if (one->from <= at && at <= one->to)
            found.add(one->name, CompletionKind::variable, one->type);
    for (const SourceFunction& one : names.functions)
        found.add(one, CompletionKind::function);
    for (const SourceRecord& one : names.records)
        found.add(one.name, CompletionKind::type);
    for (const std::string& one : names.macros)
        found.add(one, CompletionKind::constant);
}

void addAll(const WritingNames& names, std::size_t at, Collector& found) {
    addSource(names.own, at, found);
    addSource(names.host, std::string_view::npos, found);
    found.sortFrom(0);
    const std::size_t own = found.list.size();
    for (const msl::LibraryName& row : libraryRows(""))
        found.add(row);
    for (const std::string& one : MSLSyntax::types())
        if (one != "Particle" && one != "Vertex" && one != "Trails") // declared above, if at all
            found.add(one, CompletionKind::type);
    for (const std::string& one : MSLSyntax::keywords())
        found.add(one, CompletionKind::keyword);
    found.sortFrom(own);
}

// The number of tokens before the byte `at`.
std::size_t tokensBefore(const SourceNames& names, std::size_t at) {
    return static_cast<std::size_t>(std::ranges::lower_bound(names.tokens, at, {}, &CodeToken::at) -
                                    names.tokens.begin());
}

// Whether the word at `from` follows a type, as the name that a declaration gives.
bool isDeclaredName(const WritingNames& names, const CodeToken& before) {
    if (before.kind != CodeToken::Kind::word)
        return false;
    return MSLSyntax::types().contains(std::string(before.text)) || before.text == "auto" ||
           before.text == "struct" || names.record(before.text) != nullptr ||
           vectorShape(before.text).components > 0;
}

// Whether text that follows the token belongs to it.
bool isOpenAtEnd(std::string_view token, SyntaxKind kind) {
    if (token.starts_with("/*"))
        return token.size() < 4 || !token.ends_with("*/");
    if (kind == SyntaxKind::string)
        return token.size() < 2 || token.back() != token.front();
    return true; // to the end of the line
}

} // namespace

bool isOutsideCode(std::string_view text, std::size_t at) {
    UTF16Cursor begins(text), ends(text);
    for (const SyntaxToken& token : MSLSyntax::tokens(text)) {
        const std::size_t begin = begins.byteOf(token.range.location);
        if (begin >= at)
            return false;
        const std::size_t end = ends.byteOf(token.range.location + token.range.length);
        if (end < at)
            continue;
        const bool isInside = end > at || isOpenAtEnd(text.substr(begin, end - begin), token.kind);
        if (isInside &&
            (token.kind == SyntaxKind::comment || token.kind == SyntaxKind::header ||
             token.kind == SyntaxKind::string || token.kind == SyntaxKind::preprocessor))
            return true;
    }
    return false;
}

Completions completionsAt(std::string_view text, std::size_t at, CompletionCause cause) {
    at = std::min(at, text.size());
    const std::string_view word = wordBefore(text, at);
    Completions result{.from = at - word.size(), .list = {}};
    const bool isNumber = !word.empty() && word[0] >= '0' && word[0] <= '9';
    const bool isAsked = cause == CompletionCause::request;
    const char before = result.from > 0 ? text[result.from - 1] : ' ';
    const bool isTooShort = word.size() < shortestTyped && before != '.' && before != ':' &&
                            before != '>' && before != '[';
    if (isNumber || (isTooShort && !isAsked) || isOutsideCode(text, at))
        return result;
    const WritingNames names(text);
    const std::size_t next = tokensBefore(names.own, result.from);
    const auto isMark = [&](std::size_t back, std::string_view mark) {
        return next >= back && names.own.tokens[next - back].is(mark);
    };
    Collector found(word);
    if (isMark(1, ".") || isMark(1, "->")) {
        if (next >= 2)
            addMembers(names, ExpressionTypes(names).ofOperand(next - 2), found);
    } else if (isMark(1, "::")) {
        if (next >= 2)
            addQualified(names, names.own.tokens[next - 2].text, found);
    } else if (isMark(1, "[") && isMark(2, "[")) {
        for (const msl::LibraryName& row : libraryRows("[["))
            found.add(row);
    } else if (isAsked || (word.size() >= shortestTyped &&
                           (next == 0 || !isDeclaredName(names, names.own.tokens[next - 1])))) {
        addAll(names, at, found);
    }
    result.list = std::move(found.list);
    const bool isWhole = result.list.size() == 1 && result.list[0].name == word;
    if (isWhole && !isAsked)
        result.list.clear();
    return result;
}

} // namespace tarnwick::player
