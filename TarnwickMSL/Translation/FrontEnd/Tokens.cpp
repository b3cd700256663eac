#include "TarnwickMSL/Translation/FrontEnd/Tokens.h"

#include "TarnwickMSL/Translation/FrontEnd/Closers.h"
#include "TarnwickMSL/Translation/FrontEnd/Missing.h"
#include "TarnwickMSL/Translation/FrontEnd/TokenPass.h"
#include "TarnwickMSL/Translation/FrontEnd/TokenPlaces.h"

#include <clang/Basic/Diagnostic.h>
#include <llvm/ADT/StringExtras.h>

#include <algorithm>
#include <array>
#include <string>

namespace tarnwick::msl {

Token TokenPass::make(tok::TokenKind kind, SourceLocation at, IdentifierInfo* name) const {
    Token token;
    token.startToken();
    token.setKind(kind);
    token.setLocation(at);
    token.setLength(1);
    if (name)
        token.setIdentifierInfo(name);
    return token;
}

// Appends tokens, separated by spaces in `words`, all at one location.
void TokenPass::append(std::vector<Token>& to, const char* words, SourceLocation at) {
    static constexpr std::array<std::pair<const char*, tok::TokenKind>, 18> punctuation{
        {{"(", tok::l_paren},
         {")", tok::r_paren},
         {"<", tok::less},
         {">", tok::greater},
         {"=", tok::equal},
         {"[", tok::l_square},
         {"]", tok::r_square},
         {",", tok::comma},
         {"::", tok::coloncolon},
         {"{", tok::l_brace},
         {"}", tok::r_brace},
         {"&", tok::amp},
         {"&&", tok::ampamp},
         {"||", tok::pipepipe},
         {"*", tok::star},
         {";", tok::semi},
         {".", tok::period},
         {"->", tok::arrow}}};
    llvm::SmallVector<llvm::StringRef, 16> pieces;
    llvm::StringRef(words).split(pieces, ' ', -1, false);
    for (llvm::StringRef piece : pieces) {
        tok::TokenKind kind = tok::unknown;
        for (const auto& [text, known] : punctuation)
            if (piece == text)
                kind = known;
        if (kind != tok::unknown) {
            to.push_back(make(kind, at));
        } else if (piece.front() == '"') {
            Token text = make(tok::string_literal, at);
            preprocessor.CreateString(piece, text, at, at);
            to.push_back(text);
        } else {
            IdentifierInfo* name = preprocessor.getIdentifierInfo(piece);
            to.push_back(make(name->getTokenID(), at, name));
        }
    }
}
void TokenPass::dropRange(std::size_t from, std::size_t end) {
    for (; from < end; ++from)
        edits[from].dropped = true;
}

// Whether the address space at i qualifies a method: `float get() const thread {`.
bool TokenPass::isMethodQualifier(std::size_t i) const {
    while (i > 0 && (isAddressSpace(tokens[i - 1]) || is(i - 1, tok::kw_const)))
        --i;
    return i > 0 && is(i - 1, tok::r_paren);
}

// Whether the keyword at i is used as a name: no type follows it.
bool TokenPass::isUsedAsName(std::size_t i) const {
    if (i + 1 >= tokens.size())
        return false;
    const Token& next = tokens[i + 1];
    if (next.isOneOf(tok::star, tok::amp)) // `float thread* p`, or a product
        return misnamed.contains(tokens[i].getIdentifierInfo()) && i > 0 &&
               !endsType(tokens[i - 1]) && !is(i - 1, tok::greater);
    if (next.isAnnotation() || wordOf(next) || next.isOneOf(tok::coloncolon, tok::eof))
        return false;
    if (next.is(tok::l_paren) && (is(i + 2, tok::amp) || is(i + 2, tok::star)) &&
        is(i + 3, tok::identifier) && is(i + 4, tok::r_paren) && is(i + 5, tok::l_square))
        return false;       // `float* device (&list)[4]`
    std::size_t before = i; // `device T* constant (&list)[2]`, `device T* const constant (&)[2]`
    while (before > 0 && is(before - 1, tok::kw_const))
        --before;
    const bool isOfPointer = before > 0 && is(before - 1, tok::star);
    if (isOfPointer && next.is(tok::l_paren) && (is(i + 2, tok::star) || is(i + 2, tok::amp)))
        return false;
    return !isMethodQualifier(i) || misnamed.contains(tokens[i].getIdentifierInfo());
}

// Reports a variable named like a keyword, `thread`, and keeps it as a name, so that no further
// errors follow.
bool TokenPass::isNameNotKeyword(std::size_t i) {
    if (!isUsedAsName(i))
        return false;
    const IdentifierInfo* word = tokens[i].getIdentifierInfo();
    if (misnamed.insert(word).second)
        report(i, "'" + word->getName().str() +
                      "' is a keyword of the Metal Shading Language and cannot be a name");
    return true;
}

// The tokens of `coherent` or `coherent(device)` at i, beside the `device` that it qualifies (Metal
// Shading Language 3.2); 0 if the word at i is another's.
std::size_t TokenPass::coherentLength(std::size_t i) const {
    if (!isWord(i, "coherent"))
        return 0;
    const bool hasScope = is(i + 1, tok::l_paren) && is(i + 3, tok::r_paren);
    const std::size_t length = hasScope ? 4 : 1;
    const bool isBeside = isWord(i + length, "device") || (i > 0 && isWord(i - 1, "device"));
    return isBeside ? length : 0;
}

// Whether the `<` at `open` begins a list of at least `count` arguments.
bool TokenPass::hasArguments(std::size_t open, unsigned count) const {
    unsigned depth = 1, found = 1;
    for (std::size_t i = open + 1; is(open, tok::less) && i < tokens.size() && depth > 0; ++i) {
        if (tokens[i].isOneOf(tok::semi, tok::l_brace, tok::r_brace, tok::r_paren))
            return false;
        if (tokens[i].isOneOf(tok::l_paren, tok::l_square))
            i = std::max(i, scopes.match(i));
        depth += is(i, tok::less) ? 1 : 0;
        depth -= is(i, tok::greater) ? 1 : 0;
        found += depth == 1 && is(i, tok::comma) ? 1 : 0;
    }
    return found >= count;
}

// The library's name of the `mesh`, `topology` or `uniform` at i; null if it is a name of the
// program. The library has them by other names, because programs name functions so.
const char* TokenPass::libraryWord(std::size_t i) const {
    const bool isOfMetal = i > 1 && is(i - 1, tok::coloncolon) && isWord(i - 2, "metal");
    if (isWord(i, "mesh") && (isOfMetal || hasArguments(i + 1, 5)))
        return "msl_mesh";
    if (isWord(i, "uniform") && (isOfMetal || (!ownsUniform && is(i + 1, tok::less))))
        return "msl_uniform";
    const bool isKind =
        is(i + 1, tok::coloncolon) &&
        (isWord(i + 2, "point") || isWord(i + 2, "line") || isWord(i + 2, "triangle"));
    if (isWord(i, "topology") && (isOfMetal || isKind))
        return "msl_topology";
    return nullptr;
}

// Whether a pointer of the program is coherent. Types do not keep it, so that all buffers are then.
bool TokenPass::hasCoherence() const {
    for (std::size_t i = 0; i < tokens.size(); ++i)
        if (coherentLength(i))
            return true;
    return false;
}

// Whether the program has a variable, a function or a type of its own with the name `uniform`.
bool TokenPass::declaresUniform() const {
    for (std::size_t i = 1; i < tokens.size(); ++i) {
        const bool isRecord = tokens[i - 1].isOneOf(tok::kw_struct, tok::kw_class, tok::kw_union);
        if (isWord(i, "uniform") && !is(i - 1, tok::coloncolon) &&
            (isRecord || !is(i + 1, tok::less)))
            return true;
    }
    return false;
}

// Whether the `threadgroup` at i declares a variable, not a pointer or a reference.
bool TokenPass::isThreadgroupVariable(std::size_t i) const {
    if (scopes.kindAt(i) != ScopeKind::block || scopes.parenDepthAt(i) > 0)
        return false;
    for (std::size_t j = i + 1; j < tokens.size(); ++j) {
        if (is(j, tok::star) || is(j, tok::amp))
            return false;
        if (is(j, tok::l_paren)) // `threadgroup float (&list)[4] = lists[0];`
            return !is(j + 1, tok::amp) && !is(j + 1, tok::star);
        if (is(j, tok::semi) || is(j, tok::equal) || is(j, tok::l_square) || is(j, tok::l_brace))
            break;
    }
    return true;
}

// Whether a variable of the declaration at i has an initial value.
bool TokenPass::hasInitialValue(std::size_t i) const {
    for (; i < tokens.size() && !is(i, tok::semi); ++i) {
        if (is(i, tok::equal) || is(i, tok::l_brace))
            return true;
        if (is(i, tok::l_square))
            i = scopes.match(i);
    }
    return false;
}

// Rewrites `constant`, `device`, `thread`, `threadgroup` and `object_data`.
void TokenPass::qualifier(std::size_t i) {
    SourceLocation at = tokens[i].getLocation();
    const bool isArgument = i > entryOpen && i < entryClose;
    edits[i].dropped = true;
    if (isWord(i, "constant")) {
        if (functionConstant(i) || isConstructorSpace(i))
            return;
        if (!(i > 0 && is(i - 1, tok::kw_const)) && !is(i + 1, tok::kw_const))
            append(edits[i].after, "const", at);
    } else if (isWord(i, "device")) {
        if (isArgument)
            append(edits[i].after,
                   isCoherent
                       ? "__attribute__ ( ( msl_device ) ) __attribute__ ( ( msl_coherent ) )"
                       : "__attribute__ ( ( msl_device ) )",
                   at);
    } else if (isWord(i, "object_data")) {
        if (isArgument)
            append(edits[i].after, "__attribute__ ( ( msl_object_data ) )", at);
    } else if (isWord(i, "threadgroup")) {
        if (isArgument) {
            append(edits[i].after, "__attribute__ ( ( msl_threadgroup ) )", at);
            return;
        }
        if (isThreadgroupVariable(i))
            append(edits[i].after,
                   hasInitialValue(i)
                       ? "static __attribute__ ( ( section ( \"threadgroup.zero\" ) ) )"
                       : "static __attribute__ ( ( section ( \"threadgroup\" ) ) )",
                   at);
    }
}

// Returns the end of the `[[...]]` around i, or 0 outside of such a list.
std::size_t TokenPass::attributeListEnd(std::size_t i) const {
    for (std::size_t at = i; at-- > 1;) {
        if (is(at, tok::l_square) && is(at - 1, tok::l_square))
            return scopes.match(at - 1);
        if (is(at, tok::r_square) || is(at, tok::semi) || is(at, tok::l_brace) ||
            is(at, tok::r_brace) || is(at, tok::l_paren))
            return 0;
        if (is(at, tok::r_paren))
            at = scopes.match(at);
    }
    return 0;
}

// Rewrites `vertex`, `fragment` and `kernel` before a declaration, and finds the arguments of the
// entry point.
void TokenPass::entryPoint(std::size_t i) {
    const std::size_t listEnd = attributeListEnd(i);
    if (!listEnd) {
        const bool isAttributed = is(i + 1, tok::l_square) && is(i + 2, tok::l_square);
        if (!wordAt(i + 1) && !isAttributed && !is(i + 1, tok::coloncolon)) {
            if (misnamed.insert(tokens[i].getIdentifierInfo()).second)
                report(i,
                       "'" + tokens[i].getIdentifierInfo()->getName().str() +
                           "' is a keyword of the Metal Shading Language; other compilers do not "
                           "accept it as a name",
                       clang::DiagnosticsEngine::Warning);
            return;
        }
        std::string attribute =
            "__attribute__ ( ( msl_" + tokens[i].getIdentifierInfo()->getName().str() + " ) )";
        append(edits[i].after, attribute.c_str(), tokens[i].getLocation());
        edits[i].dropped = true;
    }
    std::size_t open = listEnd ? listEnd + 1 : i + 1;
    while (open < tokens.size() && !is(open, tok::l_paren) && !is(open, tok::semi))
        open = is(open, tok::l_square) ? scopes.match(open) + 1 : open + 1;
    if (is(open, tok::l_paren)) {
        entryOpen = open;
        entryClose = scopes.match(open);
    }
}

// Reports and drops an attribute that is not supported.
bool TokenPass::missingAttribute(std::size_t i) {
    const IdentifierInfo* word = wordAt(i);
    if (!word || !isMissingAttribute(std::string_view(word->getName())))
        return false;
    report(i, missing("attribute '" + word->getName().str() + "'"));
    dropRange(i, is(i + 1, tok::l_paren) ? scopes.match(i + 1) + 1 : i + 1);
    return true;
}

// Rewrites the word of `[[user(name)]]` and `[[depth(any)]]` to a string, and writes commas that
// are missing between attributes. Puts parentheses round
// the name in `[[buffer(slot)]]`: Clang takes a single name for a word, `(slot)` for a value.
void TokenPass::attributeArguments(std::size_t i) {
    static constexpr llvm::StringLiteral numbered[] = {"buffer",
                                                       "texture",
                                                       "sampler",
                                                       "color",
                                                       "attribute",
                                                       "threadgroup",
                                                       "function_constant",
                                                       "max_total_threads_per_threadgroup",
                                                       "max_total_threadgroups_per_mesh_grid"};
    const std::size_t end = scopes.match(i);
    const unsigned depth = scopes.parenDepthAt(i + 2);
    for (std::size_t j = i + 2; j + 1 < end; ++j) {
        if ((is(j - 1, tok::l_square) || is(j - 1, tok::comma)) && missingAttribute(j))
            continue;
        const bool isWithoutComma = is(j, tok::identifier) && scopes.parenDepthAt(j) == depth &&
                                    (is(j - 1, tok::identifier) || is(j - 1, tok::r_paren));
        if (isWithoutComma) // `[[user(colour) flat]]`, as in older Clang
            append(edits[j].before, ",", tokens[j].getLocation());
        const std::size_t argument = j + 2;
        if (!is(j + 1, tok::l_paren) || !is(argument + 1, tok::r_paren) || !wordAt(argument))
            continue;
        const SourceLocation at = tokens[argument].getLocation();
        if (isWord(j, "user") || isWord(j, "depth")) {
            std::string text = "\"" + tokens[argument].getIdentifierInfo()->getName().str() + "\"";
            append(edits[argument].after, text.c_str(), at);
            edits[argument].dropped = true;
        } else if (llvm::any_of(numbered, [&](llvm::StringRef word) { return isWord(j, word); })) {
            append(edits[argument].before, "(", at);
            append(edits[argument].after, ")", at);
        }
    }
}

// Moves the sizes of `float list[] [[buffer(0)]]` behind the attributes: C++ has the attributes of
// a variable directly after its name.
void TokenPass::arraySizes(std::size_t i) {
    std::size_t first = i;
    while (first > 0 && is(first - 1, tok::r_square) && !is(first - 2, tok::r_square))
        first = scopes.match(first - 1);
    if (first == i || first == 0 || !is(first - 1, tok::identifier))
        return;
    const std::size_t end = scopes.match(i);
    for (std::size_t j = first; j < i; ++j)
        edits[end].after.push_back(tokens[j]);
    dropRange(first, i);
}

// Rewrites `[[unroll]]`, `[[unroll(4)]]` and `[[nounroll]]` before a loop to the attribute that
// Clang has for them.
bool TokenPass::unrollAttribute(std::size_t i) {
    std::size_t word = i + 2;
    if (isWord(word, "clang") && is(word + 1, tok::coloncolon))
        word += 2;
    const bool isKept = isWord(word, "nounroll");
    const std::size_t end = scopes.match(i);
    const bool hasNumber = !isKept && is(word + 1, tok::l_paren);
    const std::size_t last = hasNumber ? scopes.match(word + 1) : word;
    if ((!isKept && !isWord(word, "unroll")) || last + 2 != end)
        return false;
    const SourceLocation at = tokens[word].getLocation();
    dropRange(i, word + 1);
    dropRange(end - 1, end + 1);
    append(edits[word].after, "__attribute__ ( ( opencl_unroll_hint", at);
    if (isKept) {
        append(edits[word].after, "(", at);
        edits[word].after.push_back(number("1", at));
        append(edits[word].after, ")", at);
    }
    append(edits[end].after, ") )", at);
    return true;
}

// A number with another text at the same location.
Token TokenPass::number(llvm::StringRef text, SourceLocation at) const {
    Token literal = make(tok::numeric_constant, at);
    char* copy = preprocessor.getPreprocessorAllocator().Allocate<char>(text.size() + 1);
    std::copy(text.begin(), text.end(), copy);
    copy[text.size()] = '\0';
    literal.setLiteralData(copy);
    literal.setLength(static_cast<unsigned>(text.size()));
    return literal;
}

// Rewrites `0.5h`, which Clang accepts in OpenCL only, to half(0.5f), `0.5bf` to bfloat(0.5f), and
// `0.5` to 0.5f: Clang's own single-precision constants are doubles beside expressions that depend
// on a template parameter.
void TokenPass::literal(std::size_t i) {
    llvm::SmallString<32> buffer;
    std::string text = preprocessor.getSpelling(tokens[i], buffer).str();
    const bool isHex = text.size() > 1 && (text[1] == 'x' || text[1] == 'X');
    const bool isHalf = !isHex && (text.back() == 'h' || text.back() == 'H');
    const bool isBfloat = !isHex && (text.ends_with("bf") || text.ends_with("BF"));
    const bool isFloating = text.find_first_of(isHex ? "pP" : ".eE") != std::string::npos;
    const bool hasSuffix = !llvm::isDigit(text.back()) && text.back() != '.';
    const char* const type = isHalf ? "half (" : (isBfloat ? "bfloat (" : nullptr);
    if (!type && (!isFloating || hasSuffix))
        return;
    if (type)
        text.resize(text.size() - (isHalf ? 1 : 2));
    if (!isFloating)
        text += ".0";
    const SourceLocation at = tokens[i].getLocation();
    const Token single = number(text + "f", at);
    edits[i].dropped = true;
    if (type)
        append(edits[i].before, type, at);
    edits[i].before.push_back(single);
    if (type)
        append(edits[i].before, ")", at);
}

void TokenPass::report(std::size_t i, const std::string& message,
                       clang::DiagnosticsEngine::Level level) {
    clang::DiagnosticsEngine& diagnostics = preprocessor.getDiagnostics();
    const unsigned id = diagnostics.getDiagnosticIDs()->getCustomDiagID(
        static_cast<clang::DiagnosticIDs::Level>(level), "%0");
    diagnostics.Report(tokens[i].getLocation(), id) << message;
}

// Rewrites `template [[host_name("name")]] kernel void f<float>(...);`: C++ allows attributes there
// only in GNU's form. Attributes that the template already has are dropped.
void TokenPass::explicitInstantiation(std::size_t i) {
    for (std::size_t at = i + 1; is(at, tok::l_square) && is(at + 1, tok::l_square);) {
        const std::size_t end = scopes.match(at);
        for (std::size_t j = at + 2; j < end; ++j)
            if (isWord(j, "host_name") && is(j + 1, tok::l_paren) &&
                is(j + 2, tok::string_literal)) {
                append(edits[end].after, "__attribute__ ( ( host_name (", tokens[j].getLocation());
                for (std::size_t part = j + 2; is(part, tok::string_literal); ++part)
                    edits[end].after.push_back(tokens[part]);
                append(edits[end].after, ") ) )", tokens[j].getLocation());
            }
        dropRange(at, end + 1);
        at = end + 1;
    }
}

// Reports keywords of C++ that a shader may not use.
void TokenPass::forbidden(std::size_t i) {
    switch (tokens[i].getKind()) {
    case tok::kw_double:
    case tok::kw_goto:
    case tok::kw_asm:
    case tok::kw_virtual:
    case tok::kw_dynamic_cast:
    case tok::kw_typeid:
    case tok::kw_thread_local:
    case tok::kw_try:
    case tok::kw_throw:
        break;
    case tok::kw_delete:
        if (i > 0 && is(i - 1, tok::equal))
            return; // a deleted function
        [[fallthrough]];
    case tok::kw_new:
        if (i > 0 && is(i - 1, tok::kw_operator))
            return;
        break;
    default:
        return;
    }
    report(i, "'" + tokens[i].getIdentifierInfo()->getName().str() + "' is not supported in Metal");
    if (is(i, tok::kw_try) || is(i, tok::kw_throw) || is(i, tok::kw_virtual))
        edits[i].dropped = is(i, tok::kw_virtual);
    if (is(i, tok::kw_double)) {
        edits[i].dropped = true;
        append(edits[i].after, "float", tokens[i].getLocation());
    }
}

std::vector<Token> TokenPass::run() {
    isCoherent = hasCoherence();
    ownsUniform = declaresUniform();
    const Token end = tokens.back(); // may have been changed as the match of an unclosed bracket
    for (std::size_t i = 0; i < tokens.size();) {
        const Token& token = tokens[i];
        if (edits[i].dropped) { // together with an attribute
            ++i;
            continue;
        }
        if (!wordOf(token)) {
            if (token.is(tok::numeric_constant))
                literal(i);
            else if (token.is(tok::starequal))
                swizzleTimes(i);
            else if (token.is(tok::l_square) && is(i + 1, tok::l_square) && unrollAttribute(i))
                ;
            else if (token.is(tok::l_square) && is(i + 1, tok::l_square))
                attributeArguments(i), arraySizes(i);
            else if (token.is(tok::amp))
                component(i);
            else if (token.is(tok::l_paren))
                cast(i);
            else if (token.is(tok::colon) && i > 0 && is(i - 1, tok::r_paren) &&
                     scopes.kindAt(i) != ScopeKind::block)
                initialiserLists.push_back(i);
            ++i;
            continue;
        }
        if (const std::size_t length = coherentLength(i)) {
            dropRange(i, i + length);
            i += length;
            continue;
        }
        if (const char* word = libraryWord(i)) {
            edits[i].dropped = true;
            append(edits[i].after, word, token.getLocation());
            if (const auto span = constructedType(i)) { // `uniform<float3>(v)`
                type(i, *span);
                if (edits[i + 1].dropped)
                    edits[i].after.clear(); // the constructor's call has the type
            }
            ++i;
            continue;
        }
        if (declaresName(i))
            learnName(i);
        if (auto span = constructedType(i)) {
            i = type(i, *span);
            continue;
        }
        if (token.is(tok::kw_template) && is(i + 1, tok::l_square))
            explicitInstantiation(i);
        else if (token.is(tok::kw_template))
            learnTemplateParameters(i);
        else if (token.is(tok::kw_using) || token.is(tok::kw_typedef))
            learnAlias(i);
        else if (token.is(tok::kw_static_cast))
            staticCast(i);
        else if (isAddressSpace(token) && attributeListEnd(i))
            ; // the attribute of that name
        else if (isAddressSpace(token) && !isNameNotKeyword(i))
            qualifier(i);
        else if (isWord(i, "vertex") || isWord(i, "fragment") || isWord(i, "kernel") ||
                 ((isWord(i, "object") || isWord(i, "mesh")) && attributeListEnd(i)))
            entryPoint(i);
        else if (isWord(i, "is_function_constant_defined"))
            constantQuery(i);
        else
            forbidden(i);
        ++i;
    }
    for (const std::size_t colon : initialiserLists)
        memberInitialisers(colon);
    repeatedFunctions();
    reportUnknownConstants();
    tokens.back() = end;
    edits.back().dropped = false;
    edits.back().after.clear();
    return result();
}

void TokenPass::appendEdited(std::vector<Token>& to, std::size_t i) const {
    to.insert(to.end(), edits[i].before.begin(), edits[i].before.end());
    if (!edits[i].dropped)
        to.push_back(tokens[i]);
    to.insert(to.end(), edits[i].after.begin(), edits[i].after.end());
}

std::vector<Token> TokenPass::result() const {
    std::vector<Token> all;
    all.reserve(tokens.size() + tokens.size() / 4);
    for (std::size_t i = 0; i < tokens.size(); ++i)
        appendEdited(all, i);
    TokenPlaces places(preprocessor.getSourceManager(), preprocessor.getLangOpts());
    for (Token& token : all)
        places.makeUnique(token);
    return all;
}

std::vector<Token> programTokens(clang::Preprocessor& preprocessor,
                                 const ConstantValues& constants) {
    std::vector<Token> tokens;
    do {
        preprocessor.Lex(tokens.emplace_back());
    } while (tokens.back().isNot(tok::eof));
    partClosers(tokens);
    return TokenPass(preprocessor, std::move(tokens), constants).run();
}

} // namespace tarnwick::msl
