// Constructors of vectors in the token pass: rewrites them to calls that C++ can parse.
#include "TarnwickMSL/Translation/FrontEnd/TokenPass.h"

#include <llvm/ADT/STLExtras.h>
#include <llvm/ADT/StringRef.h>

#include <string>

namespace tarnwick::msl {

namespace {

// Compares text: looking up an identifier of the library would deserialise its declaration.
bool isVectorName(llvm::StringRef name) {
    if (name.size() < 4 || name.back() < '2' || name.back() > '4')
        return false;
    return llvm::is_contained(
        {"char", "uchar", "short", "ushort", "int", "uint", "long", "ulong", "half", "float"},
        name.drop_back(1));
}

// Whether the library has a function msl_NAME (types/constructors.h). Otherwise msl_make<NAME> is
// called.
bool hasMaker(llvm::StringRef name) {
    return isVectorName(name) &&
           llvm::is_contained({"int", "uint", "half", "float"}, name.drop_back(1));
}

} // namespace

// `conditional_t<..., float3, float2>` and `remove_reference<decltype(v)>::type`: a trait of the
// library that names a vector type or a decltype.
std::optional<TokenPass::TypeSpan> TokenPass::tracedType(std::size_t i) const {
    llvm::StringRef name = tokens[i].getIdentifierInfo()->getName();
    const bool isAlias = name.consume_back("_t");
    if (!llvm::is_contained({"add_const", "conditional", "decay", "enable_if", "remove_const",
                             "remove_cv", "remove_cvref", "remove_reference"},
                            name))
        return std::nullopt;
    const std::size_t close = scopes.angleEnd(i + 1);
    bool isVector = false;
    for (std::size_t at = i + 2; at < close && !isVector; ++at)
        isVector = constructedType(at).has_value();
    if (!isVector)
        return std::nullopt;
    if (isAlias)
        return TypeSpan{i, close + 1, true};
    if (is(close + 1, tok::coloncolon) && isWord(close + 2, "type"))
        return TypeSpan{i, close + 3, true};
    return std::nullopt;
}

std::optional<TokenPass::TypeSpan> TokenPass::constructedType(std::size_t i) const {
    if (is(i, tok::kw_decltype) && is(i + 1, tok::l_paren) && !is(i + 2, tok::kw_auto))
        return TypeSpan{i, scopes.match(i + 1) + 1, true};
    const IdentifierInfo* name = wordAt(i);
    if (!name)
        return std::nullopt;
    if (is(i + 1, tok::less) &&
        (name->getName() == "vec" || names.kindAt(name, i) == NameKind::template_)) {
        std::size_t close = scopes.angleEnd(i + 1);
        if (close)
            return TypeSpan{i, close + 1};
        return std::nullopt;
    }
    if (is(i + 1, tok::less) && libraryWord(i)) {
        const std::size_t close = scopes.angleEnd(i + 1);
        const auto inner = writtenType(i + 2);
        if (close && inner && inner->end == close)
            return TypeSpan{i, close + 1, inner->span.isDeduced};
        return std::nullopt;
    }
    if (is(i + 1, tok::less))
        return tracedType(i);
    const NameKind kind = names.kindAt(name, i);
    if (isVectorName(name->getName()) || kind == NameKind::type || kind == NameKind::deduced)
        return TypeSpan{i, i + 1, kind == NameKind::deduced};
    return std::nullopt;
}

std::optional<TokenPass::WrittenType> TokenPass::writtenType(std::size_t i) const {
    const auto isQualifier = [&](std::size_t at) {
        return is(at, tok::kw_const) || is(at, tok::kw_volatile) ||
               (at < tokens.size() && isAddressSpace(tokens[at]));
    };
    while (isQualifier(i))
        ++i;
    const std::size_t first = i;
    i = qualifierEnd(i);
    const auto type = constructedType(i);
    if (!type)
        return std::nullopt;
    std::size_t end = type->end;
    while (isQualifier(end))
        ++end;
    return WrittenType{{first, type->end, type->isDeduced}, end};
}

// The token after the qualifiers that begin at i: `typename ::m::Box<float>::`.
std::size_t TokenPass::qualifierEnd(std::size_t i) const {
    if (is(i, tok::kw_typename))
        ++i;
    if (is(i, tok::coloncolon))
        ++i;
    while (is(i, tok::identifier)) {
        const std::size_t close = is(i + 1, tok::less) ? scopes.angleEnd(i + 1) : i;
        if (!close || !is(close + 1, tok::coloncolon) || tracedType(i))
            return i;
        i = close + 2;
        if (is(i, tok::kw_template))
            ++i;
    }
    return i;
}

// Learns the names in `template <typename T, class U, int N>`: each may be a vector type.
void TokenPass::learnTemplateParameters(std::size_t i) {
    if (!is(i + 1, tok::less))
        return;
    const std::size_t close = scopes.angleEnd(i + 1), end = scopes.declarationEnd(close);
    for (std::size_t at = i + 1; at < close; ++at) {
        if (!is(at, tok::kw_typename) && !is(at, tok::kw_class))
            continue;
        const std::size_t name = is(at + 1, tok::ellipsis) ? at + 2 : at + 1;
        if (is(name, tok::identifier) && !is(name + 1, tok::coloncolon))
            names.declare(tokens[name].getIdentifierInfo(), NameKind::type, name, end);
    }
}

// Whether the token can be the last of a type.
bool TokenPass::endsType(const Token& token) {
    return !isAddressSpace(token) &&
           token.isOneOf(tok::identifier, tok::kw_float, tok::kw_half, tok::kw_int,
                         tok::kw_unsigned, tok::kw_short, tok::kw_char, tok::kw_bool, tok::kw_long,
                         tok::kw_auto, tok::kw_void);
}

// Whether the name at i, elsewhere the name of a type, is declared here as a variable or function:
// it follows a type.
bool TokenPass::declaresName(std::size_t i) const {
    if (i == 0 || i + 1 >= tokens.size() || !is(i, tok::identifier) ||
        !names.isKnown(tokens[i].getIdentifierInfo()))
        return false;
    return endsType(tokens[i - 1]) &&
           tokens[i + 1].isOneOf(tok::equal, tok::semi, tok::comma, tok::r_paren, tok::l_square,
                                 tok::l_brace, tok::l_paren, tok::colon);
}

void TokenPass::learnName(std::size_t i) {
    if (i != typedefName)
        names.declare(tokens[i].getIdentifierInfo(), NameKind::other, i, scopes.nameEnd(i));
}

// Learns `using Color = float4;` and `typedef float4 Color;`, also of a template's parameter.
void TokenPass::learnAlias(std::size_t i) {
    if (is(i, tok::kw_using) && is(i + 1, tok::identifier) && is(i + 2, tok::equal)) {
        const bool isTemplate = i > 0 && is(i - 1, tok::greater);
        if (is(i + 3, tok::kw_typename)) // may name a vector type
            names.declare(tokens[i + 1].getIdentifierInfo(),
                          isTemplate ? NameKind::template_ : NameKind::deduced, i + 1,
                          scopes.nameEnd(i));
        else if (auto span = constructedType(qualifierEnd(i + 3)); span && is(span->end, tok::semi))
            names.declare(tokens[i + 1].getIdentifierInfo(),
                          isTemplate        ? NameKind::template_
                          : span->isDeduced ? NameKind::deduced
                                            : NameKind::type,
                          i + 1, scopes.nameEnd(i));
        else // not of a vector type
            names.declare(tokens[i + 1].getIdentifierInfo(), NameKind::other, i + 1,
                          scopes.nameEnd(i));
    } else if (is(i, tok::kw_typedef)) {
        if (auto span = constructedType(qualifierEnd(i + 1));
            span && is(span->end, tok::identifier) && is(span->end + 1, tok::semi))
            names.declare(tokens[typedefName = span->end].getIdentifierInfo(),
                          span->isDeduced ? NameKind::deduced : NameKind::type, span->end,
                          scopes.nameEnd(i));
    }
}

// Rewrites `v.xy *= m` to `v.xy = v.xy * (m)`: a function cannot take a swizzle by reference, and m
// may be a matrix.
void TokenPass::swizzleTimes(std::size_t i) {
    if (i < 3 || !is(i - 2, tok::period) || !is(i - 1, tok::identifier))
        return;
    const llvm::StringRef lanes = tokens[i - 1].getIdentifierInfo()->getName();
    if (lanes.size() < 2 || lanes.find_first_not_of("xyzwrgba") != llvm::StringRef::npos)
        return;
    std::size_t first = i - 2; // the first token of the vector's expression
    for (bool wantsName = true; first > 0;) {
        const std::size_t before = first - 1;
        if (wantsName && (is(before, tok::r_square) || is(before, tok::r_paren)))
            first = scopes.match(before);
        else if (wantsName && (is(before, tok::identifier) || is(before, tok::kw_this)))
            first = before, wantsName = false;
        else if (!wantsName &&
                 (is(before, tok::period) || is(before, tok::arrow) || is(before, tok::coloncolon)))
            first = before, wantsName = true;
        else
            break;
    }
    std::size_t end = i + 1;
    while (end < tokens.size() && !is(end, tok::semi) && !is(end, tok::comma) &&
           !is(end, tok::r_paren) && !is(end, tok::r_brace) && !is(end, tok::eof))
        end = scopes.isOpen(end) ? scopes.match(end) + 1 : end + 1;
    const SourceLocation at = tokens[i].getLocation();
    tokens[i].setKind(tok::equal);
    for (std::size_t copied = first; copied < i; ++copied)
        edits[i].after.push_back(tokens[copied]);
    edits[i].after.push_back(make(tok::star, at));
    edits[i].after.push_back(make(tok::l_paren, at));
    edits[end].before.insert(edits[end].before.begin(), make(tok::r_paren, at));
}

void TokenPass::openMake(std::vector<Token>& to, TypeSpan span, SourceLocation at) {
    if (const IdentifierInfo* name = tokens[span.end - 1].getIdentifierInfo();
        name && hasMaker(name->getName()) && !is(span.first, tok::kw_typename)) {
        append(to, ("msl_" + name->getName()).str().c_str(), at);
        return;
    }
    append(to, span.isDeduced ? "msl_make < __remove_cvref (" : "msl_make <", at);
    for (std::size_t i = span.first; i < span.end; ++i) {
        if (const char* name = vectorClass(i)) {
            append(to, name, at);
            append(to, "<", at);
            i += 3;
            continue;
        }
        if (!edits[i].dropped || edits[i].after.empty())
            to.push_back(tokens[i]);
        to.insert(to.end(), edits[i].after.begin(), edits[i].after.end());
    }
    append(to, span.isDeduced ? ") >" : ">", at);
}

// Whether the braces contain nested braces or designators. C++ initialises such lists itself.
bool TokenPass::hasNestedBraces(std::size_t open) const {
    const std::size_t close = scopes.match(open);
    if (is(open + 1, tok::period))
        return true;
    for (std::size_t i = open + 1; i < close; ++i) {
        if (is(i, tok::l_brace) && (is(i - 1, tok::comma) || is(i - 1, tok::l_brace)))
            return true;
        if (is(i, tok::l_paren) || is(i, tok::l_square) || is(i, tok::l_brace))
            i = scopes.match(i);
    }
    return false;
}

bool TokenPass::hasComma(std::size_t open) const {
    for (std::size_t i = open + 1; i < scopes.match(open); ++i) {
        if (is(i, tok::comma))
            return true;
        if (scopes.isOpen(i))
            i = scopes.match(i);
    }
    return false;
}

// The first token of the qualified name that ends at `first`.
std::size_t TokenPass::qualifiedFirst(std::size_t first) const {
    while (first >= 1 && is(first - 1, tok::coloncolon)) {
        --first;
        if (first >= 1 && is(first - 1, tok::identifier))
            --first;
        else if (first >= 1 && is(first - 1, tok::greater))
            first = templateFirst(first - 1);
    }
    return first;
}

// The name before the template arguments that end at `close`.
std::size_t TokenPass::templateFirst(std::size_t close) const {
    for (std::size_t i = close; i-- > 1;) {
        if (tokens[i].isOneOf(tok::semi, tok::l_brace, tok::r_brace))
            break;
        if (is(i, tok::less) && is(i - 1, tok::identifier) && scopes.angleEnd(i) == close)
            return i - 1;
    }
    return close + 1;
}

// Whether the bracket at `open` after the type at i constructs no value: `-> metal::float3 {`, or
// the `~T()` of a destructor, unlike `~uint2(x, y)`.
bool TokenPass::isNoValue(std::size_t i, std::size_t open) const {
    const std::size_t first = qualifiedFirst(i);
    if (first == 0)
        return false;
    const bool isDestructor = is(first - 1, tok::tilde) && scopes.match(open) == open + 1;
    return isDestructor || is(i - 1, tok::kw_typename) ||
           tokens[first - 1].isOneOf(tok::kw_operator, tok::arrow, tok::kw_class, tok::kw_struct,
                                     tok::period);
}

// The number of arguments between the brackets at `open`; 0 if it is not certain, because a comma
// may be one of template arguments.
std::size_t TokenPass::plainArguments(std::size_t open) const {
    const std::size_t close = scopes.match(open);
    std::size_t count = close > open + 1 ? 1 : 0;
    for (std::size_t i = open + 1; i < close; ++i) {
        if (is(i, tok::less) || is(i, tok::ellipsis))
            return 0;
        count += is(i, tok::comma);
        if (scopes.isOpen(i) || is(i, tok::l_square))
            i = scopes.match(i);
    }
    return count;
}

// Rewrites `float2(x, y)` to `float2{x, y}`: as many arguments as lanes must be scalars, which C++
// takes in braces. The library has no part in it. Returns whether it did.
bool TokenPass::braceScalars(TypeSpan span, std::size_t open) {
    const IdentifierInfo* name = tokens[span.first].getIdentifierInfo();
    if (span.end != span.first + 1 || !name || !hasMaker(name->getName()) ||
        plainArguments(open) != static_cast<std::size_t>(name->getName().back() - '0'))
        return false;
    tokens[open].setKind(tok::l_brace);
    tokens[scopes.match(open)].setKind(tok::r_brace);
    return true;
}

// Rewrites `float4(...)` and `float4{...}`. The type with its namespaces becomes the argument of
// msl_make.
void TokenPass::callMake(std::size_t i, TypeSpan span, std::size_t open) {
    if (braceScalars(span, open))
        return;
    std::size_t first = qualifiedFirst(span.first);
    if (first > 0 && is(first - 1, tok::kw_typename))
        --first;
    openMake(edits[first].before, {first, span.end, span.isDeduced}, tokens[i].getLocation());
    dropRange(first, span.end);
    if (is(open, tok::l_brace)) {
        tokens[open].setKind(tok::l_paren);
        tokens[scopes.match(open)].setKind(tok::r_paren);
    }
}

// Rewrites `name(...)`, `name{...}` and `name = {...}` after a vector type.
void TokenPass::initialise(TypeSpan span, std::size_t open, bool needsEquals) {
    if (is(open, tok::l_brace) && (span.isDeduced || hasNestedBraces(open)))
        return;
    SourceLocation at = tokens[span.first].getLocation();
    std::size_t first = qualifiedFirst(span.first);
    if (first > 0 && is(first - 1, tok::kw_typename))
        --first;
    if (needsEquals)
        append(edits[open].before, "=", tokens[open].getLocation());
    openMake(edits[open].before, {first, span.end, span.isDeduced}, at);
    if (is(open, tok::l_brace)) {
        tokens[scopes.match(open)].setKind(tok::r_paren);
        tokens[open].setKind(tok::l_paren);
    }
}

// Rewrites `name[2] = {{v2, 1}, ...}`: the innermost braces, by the number of dimensions, make
// vectors.
void TokenPass::initialiseArray(TypeSpan span, std::size_t open, unsigned dimensions) {
    for (std::size_t i = open + 1; i < scopes.match(open); ++i) {
        const bool isElement = is(i, tok::l_brace) && (i == open + 1 || is(i - 1, tok::comma));
        if (isElement && dimensions > 1)
            initialiseArray(span, i, dimensions - 1);
        else if (isElement)
            initialise(span, i, false);
        if (scopes.isOpen(i))
            i = scopes.match(i);
    }
}

// Whether `(` opens a declarator rather than arguments: `float3 (&name)[4]`, with or without a
// name, and `float3 (&name) = v`.
bool TokenPass::isParenthesised(std::size_t open) const {
    const std::size_t close = is(open + 2, tok::identifier) ? open + 3 : open + 2;
    return is(open, tok::l_paren) && (is(open + 1, tok::amp) || is(open + 1, tok::star)) &&
           is(close, tok::r_paren) &&
           tokens[close + 1].isOneOf(tok::l_square, tok::l_paren, tok::equal);
}

// Whether `(` opens the arguments of a constructor rather than the parameters of a function.
bool TokenPass::looksLikeArguments(std::size_t open) const {
    if (is(open + 1, tok::r_paren) || !is(scopes.match(open) + 1, tok::semi))
        return false;
    if (auto span = constructedType(open + 1))
        return (is(span->end, tok::l_paren) || is(span->end, tok::l_brace)) &&
               !isParenthesised(span->end);
    return is(open + 1, tok::numeric_constant) || is(open + 1, tok::minus);
}

void TokenPass::declarators(TypeSpan span, std::size_t name) {
    const ScopeKind kind = scopes.kindAt(name);
    for (;;) {
        std::size_t next = name + 1;
        if (kind == ScopeKind::type && !is(next, tok::l_square)) {
            vectorMembers.insert({scopes.bracesEnd(name), tokens[name].getIdentifierInfo()});
            vectorMemberNames.insert(tokens[name].getIdentifierInfo());
        }
        if (is(next, tok::l_paren)) {
            if (kind != ScopeKind::block && !looksLikeArguments(next))
                return;
            if (is(next + 1, tok::r_paren))
                return;
            initialise(span, next, true);
        } else if (is(next, tok::l_brace)) {
            initialise(span, next, true);
        } else if (is(next, tok::equal) && is(next + 1, tok::l_brace)) {
            initialise(span, next + 1, false);
        } else if (is(next, tok::l_square)) {
            unsigned dimensions = 0;
            for (; is(next, tok::l_square); next = scopes.match(next) + 1)
                dimensions++;
            if (is(next, tok::equal))
                ++next;
            if (is(next, tok::l_brace))
                initialiseArray(span, next, dimensions);
        }
        // Skip the initialiser, to the next declarator.
        while (next < tokens.size() && !is(next, tok::comma) && !is(next, tok::semi)) {
            if (is(next, tok::r_paren) || is(next, tok::r_brace) || is(next, tok::eof))
                return;
            const bool opens =
                is(next, tok::l_paren) || is(next, tok::l_square) || scopes.isOpen(next);
            next = opens ? scopes.match(next) + 1 : next + 1;
        }
        if (!is(next, tok::comma) || !is(next + 1, tok::identifier) || scopes.parenDepthAt(name))
            return;
        name = next + 1;
    }
}

// Whether an operand of a cast can begin at i.
bool TokenPass::beginsOperand(std::size_t i) const {
    if (i >= tokens.size())
        return false;
    const Token& token = tokens[i];
    return token.isLiteral() ||
           token.isOneOf(tok::identifier, tok::l_paren, tok::minus, tok::plus, tok::exclaim,
                         tok::tilde, tok::star, tok::plusplus, tok::minusminus, tok::coloncolon,
                         tok::kw_true, tok::kw_false, tok::kw_this, tok::kw_sizeof, tok::kw_alignof,
                         tok::kw_static_cast, tok::kw_typename, tok::kw_float, tok::kw_half) ||
           token.isOneOf(tok::kw_int, tok::kw_unsigned, tok::kw_short, tok::kw_char, tok::kw_bool,
                         tok::kw_long, tok::kw_decltype);
}

// The token after the unary expression that begins at i.
std::size_t TokenPass::unaryEnd(std::size_t i) const {
    while (i < tokens.size() &&
           tokens[i].isOneOf(tok::minus, tok::plus, tok::exclaim, tok::tilde, tok::star, tok::amp,
                             tok::plusplus, tok::minusminus, tok::coloncolon, tok::kw_typename))
        ++i;
    if (is(i, tok::l_paren)) {
        i = scopes.match(i) + 1;
        if (is(i, tok::identifier) || is(i, tok::numeric_constant) || is(i, tok::l_paren))
            return unaryEnd(i); // another cast
    } else {
        ++i;
        while (is(i, tok::coloncolon))
            i += 2;
        if (is(i, tok::less) && scopes.angleEnd(i) && is(scopes.angleEnd(i) + 1, tok::l_paren))
            i = scopes.angleEnd(i) + 1;
    }
    for (;;) {
        if (is(i, tok::l_paren) || is(i, tok::l_square) || is(i, tok::l_brace))
            i = scopes.match(i) + 1;
        else if (is(i, tok::period) || is(i, tok::arrow))
            i += 2;
        else if (is(i, tok::plusplus) || is(i, tok::minusminus))
            ++i;
        else
            return std::min(i, tokens.size());
    }
}

// Rewrites `(float3)x`.
void TokenPass::cast(std::size_t open) {
    const auto type = writtenType(open + 1);
    if (!type || type->span.isDeduced || !is(type->end, tok::r_paren) ||
        !beginsOperand(type->end + 1))
        return;
    if (open > 0 &&
        tokens[open - 1].isOneOf(tok::identifier, tok::r_paren, tok::r_square, tok::kw_sizeof,
                                 tok::kw_alignof, tok::kw_decltype, tok::kw_operator, tok::greater,
                                 tok::ellipsis)) // sizeof...(T)
        return;
    openMake(edits[open].before, type->span, tokens[open].getLocation());
    append(edits[open].before, "(", tokens[open].getLocation());
    dropRange(open, type->end + 1);
    const std::size_t end = unaryEnd(type->end + 1);
    append(edits[end - 1].after, ")", tokens[end - 1].getLocation());
}

// Rewrites `static_cast<float3>(x)`.
void TokenPass::staticCast(std::size_t i) {
    const auto type = is(i + 1, tok::less) ? writtenType(i + 2) : std::nullopt;
    if (!type || type->span.isDeduced || !is(type->end, tok::greater))
        return;
    openMake(edits[i].before, type->span, tokens[i].getLocation());
    dropRange(i, type->end + 1);
}

// Rewrites the construct that begins with the vector type at i. Returns the next token to visit.
std::size_t TokenPass::type(std::size_t i, TypeSpan span) {
    if (const char* name = vectorClass(i)) {
        append(edits[i].after, name, tokens[i].getLocation());
        edits[i].dropped = edits[i + 2].dropped = edits[i + 3].dropped = true;
        return span.end;
    }
    if (isParenthesised(span.end))
        return span.end;
    const bool opens = is(span.end, tok::l_paren) || is(span.end, tok::l_brace);
    if (opens && !isNoValue(i, span.end)) {
        if (scopes.kindAt(i) == ScopeKind::type && scopes.parenDepthAt(i) == 0 &&
            is(span.end, tok::l_paren) && !scopes.isInitialiser(i))
            return span.end; // a constructor of the class
        if (!(is(span.end, tok::l_brace) && (span.isDeduced || hasNestedBraces(span.end))))
            callMake(i, span, span.end);
    } else {
        std::size_t name = span.end; // `float3 const v(1)`
        while (is(name, tok::kw_const) || (name < tokens.size() && isAddressSpace(tokens[name])))
            ++name;
        if (is(name, tok::identifier))
            declarators(span, name);
    }
    return is(i, tok::kw_decltype) ? i + 1 : span.end; // the operand may have constructors
}

// `S::S() : a(x, y)` outside the record: only the member's name is known.
bool TokenPass::isVectorMember(std::size_t name) const {
    const IdentifierInfo* word = tokens[name].getIdentifierInfo();
    return scopes.kindAt(name) == ScopeKind::type
               ? vectorMembers.contains({scopes.bracesEnd(name), word})
               : vectorMemberNames.contains(word);
}

// Rewrites `S(...) : a(x, y), b{z} { ... }` for the members that are vectors.
void TokenPass::memberInitialisers(std::size_t colon) {
    std::size_t i = colon + 1;
    while (is(i, tok::identifier)) {
        const std::size_t name = i++;
        if (!is(i, tok::l_paren) && !is(i, tok::l_brace))
            return;
        const std::size_t close = scopes.match(i);
        if (isVectorMember(name) && hasComma(i) && !(is(i, tok::l_brace) && hasNestedBraces(i))) {
            SourceLocation at = tokens[name].getLocation();
            append(edits[i].after, "msl_make < decltype (", at);
            edits[i].after.push_back(tokens[name]);
            append(edits[i].after, ") > (", at);
            append(edits[close].before, ")", tokens[close].getLocation());
        }
        i = close + 1;
        if (!is(i, tok::comma))
            return;
        ++i;
    }
}

} // namespace tarnwick::msl
