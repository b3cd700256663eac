#include "TarnwickCore/Episode/ReservedWords.h"

#include "TarnwickCore/Text/Pattern.h"

#include <algorithm>
#include <array>

namespace tarnwick {

// clang-format off
// Sorted.
static constexpr auto swiftKeywords = std::to_array<std::string_view>({
    "Any", "Protocol", "Self", "Type", "_", "any", "as", "associatedtype", "associativity", "async",
    "await", "borrowing", "break", "case", "catch", "class", "consume", "consuming", "continue",
    "convenience", "copy", "default", "defer", "deinit", "didSet", "discard", "do", "dynamic",
    "each", "else", "enum", "extension", "fallthrough", "false", "fileprivate", "final", "for",
    "func", "get", "guard", "if", "import", "in", "indirect", "infix", "init", "inout", "internal",
    "is", "isolated", "lazy", "left", "let", "macro", "mutating", "nil", "none", "nonisolated",
    "nonmutating", "open", "operator", "optional", "override", "package", "postfix", "precedence",
    "precedencegroup", "prefix", "private", "protocol", "public", "repeat", "required", "rethrows",
    "return", "right", "self", "sending", "set", "some", "static", "struct", "subscript", "super",
    "switch", "then", "throw", "throws", "true", "try", "typealias", "unowned", "unsafe", "var",
    "weak", "where", "while", "willSet", "yield"});

// Sorted. C++14, 2.12; Metal Shading Language 3.1, 2 and 4; `init` and `self` are Swift's.
static constexpr auto functionWords = std::to_array<std::string_view>({
    "alignas", "alignof", "and", "asm", "auto", "bitand", "bitor", "break", "case", "catch",
    "class", "compl", "const", "constant", "constexpr", "continue", "decltype", "default", "delete",
    "device", "do", "else", "enum", "explicit", "export", "extern", "false", "for", "fragment",
    "friend", "goto", "if", "init", "inline", "kernel", "main", "metal", "mutable", "namespace",
    "new", "noexcept", "not", "nullptr", "operator", "or", "private", "protected", "public",
    "register", "return", "self", "signed", "sizeof", "static", "struct", "switch", "template",
    "this", "thread", "threadgroup", "throw", "true", "try", "typedef", "typeid", "typename",
    "union", "unsigned", "using", "vertex", "virtual", "void", "volatile", "while", "xor"});
// Sorted. The other keywords of C++14, 2.12, which cannot name a member.
static constexpr auto otherKeywords = std::to_array<std::string_view>({
    "and_eq", "char16_t", "char32_t", "const_cast", "dynamic_cast", "goto", "not_eq", "or_eq",
    "reinterpret_cast", "static_assert", "static_cast", "thread_local", "wchar_t", "xor_eq"});
// Sorted. Words among `functionWords` that can name a member.
static constexpr auto memberNames = std::to_array<std::string_view>({
    "fragment", "init", "kernel", "main", "metal", "self", "vertex"});
// clang-format on
static_assert(std::ranges::is_sorted(otherKeywords) && std::ranges::is_sorted(memberNames));
static_assert(std::ranges::is_sorted(swiftKeywords) && std::ranges::is_sorted(functionWords));

bool isSwiftKeyword(std::string_view word) {
    return std::ranges::binary_search(swiftKeywords, word);
}

bool isReservedFunction(std::string_view word) {
    static const Pattern numberType(
        R"(\A(bool|u?char|u?short|u?int|u?long|half|bfloat|float|double)([2-4](x[2-4])?)?\z)");
    return std::ranges::binary_search(functionWords, word) || numberType.matchesIn(word);
}

bool isReservedMember(std::string_view word) {
    static const Pattern scalar(R"(\A(bool|char|short|int|long|half|float|double)\z)");
    return (std::ranges::binary_search(functionWords, word) &&
            !std::ranges::binary_search(memberNames, word)) ||
           std::ranges::binary_search(otherKeywords, word) || scalar.matchesIn(word);
}

} // namespace tarnwick
