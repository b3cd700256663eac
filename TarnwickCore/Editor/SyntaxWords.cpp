#include "TarnwickCore/Editor/SyntaxWords.h"

#include <cstddef>
#include <cstdint>

namespace tarnwick {
namespace {

// The length and four letters distinguish the words well enough: float2x3 from float3x3, ushort
// from ushort4.
std::size_t hashOf(std::string_view word) {
    auto letter = [&](std::size_t at) {
        return static_cast<std::uint32_t>(static_cast<unsigned char>(word[at]));
    };
    const std::size_t last = word.size() - 1;
    const std::uint32_t letters =
        letter(0) << 24 | letter(last / 3) << 16 | letter(last - last / 3) << 8 | letter(last);
    return (letters + static_cast<std::uint32_t>(word.size())) * 0x9e3779b1u >> 22;
}

SyntaxWords::Words keywordWords() {
    return {
        "if",        "else",        "for",   "while",     "do",       "return",          "break",
        "continue",  "switch",      "case",  "default",   "struct",   "constant",        "device",
        "thread",    "threadgroup", "const", "constexpr", "static",   "inline",          "using",
        "namespace", "true",        "false", "kernel",    "vertex",   "fragment",        "typedef",
        "enum",      "sizeof",      "auto",  "template",  "typename", "discard_fragment"};
}

SyntaxWords::Words typeWords() {
    SyntaxWords::Words words{"void",        "bool",      "uint",   "int",       "float",
                             "half",        "short",     "ushort", "char",      "uchar",
                             "long",        "ulong",     "size_t", "Uniforms",  "Params",
                             "Particle",    "Vertex",    "Trails", "texture2d", "sampler",
                             "atomic_uint", "atomic_int"};
    for (const char* scalar :
         {"bool", "int", "uint", "float", "half", "short", "ushort", "char", "uchar"})
        for (const char* lanes : {"2", "3", "4"})
            words.insert(std::string(scalar) + lanes);
    for (const char* scalar : {"float", "half"})
        for (const char* columns : {"2", "3", "4"})
            for (const char* rows : {"2", "3", "4"})
                words.insert(std::string(scalar) + columns + "x" + rows);
    return words;
}

} // namespace

const SyntaxWords::Words& SyntaxWords::keywords() {
    static const Words words = keywordWords();
    return words;
}

const SyntaxWords::Words& SyntaxWords::types() {
    static const Words words = typeWords();
    return words;
}

const SyntaxWords& SyntaxWords::all() {
    static const SyntaxWords words;
    return words;
}

SyntaxWords::SyntaxWords() {
    add(keywords(), SyntaxKind::keyword);
    add(types(), SyntaxKind::type);
}

void SyntaxWords::add(const Words& words, SyntaxKind kind) {
    for (const std::string_view word : words) {
        std::size_t place = hashOf(word);
        while (!places_[place].word.empty())
            place = (place + 1) % places_.size();
        places_[place] = {word, kind};
    }
}

std::optional<SyntaxKind> SyntaxWords::kindOf(std::string_view word) const {
    for (std::size_t place = hashOf(word); !places_[place].word.empty();
         place = (place + 1) % places_.size())
        if (places_[place].word == word)
            return places_[place].kind;
    return std::nullopt;
}

} // namespace tarnwick
