// What the token pass makes of programs: the rewrites one by one, and the laws that text, order and
// locations are kept.
#include "TarnwickMSL/Translation/FrontEnd/Compiler.h"
#include "TarnwickMSL/Translation/FrontEnd/TokenPlaces.h"
#include "TarnwickMSL/Translation/FrontEnd/Tokens.h"
#include "tests/TarnwickMSL/FrontEnd/Parsing.h"

#include <clang/Basic/SourceManager.h>
#include <clang/Frontend/FrontendActions.h>
#include <clang/Lex/Preprocessor.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <set>

namespace tarnwick::msl {

namespace {

namespace tok = clang::tok;

struct Spelled {
    std::string text;
    tok::TokenKind kind;
    std::size_t offset; // in the program, of the location that the token's leads back to
    unsigned location;  // Clang's own number
};

std::string spelling(const clang::Token& token) {
    if (token.isLiteral() && token.getLiteralData())
        return {token.getLiteralData(), token.getLength()};
    if (const clang::IdentifierInfo* name = token.getIdentifierInfo())
        return name->getName().str();
    const char* punctuation = tok::getPunctuatorSpelling(token.getKind());
    return punctuation ? punctuation : "";
}

class Rewriting : public clang::PreprocessorFrontendAction {
  public:
    explicit Rewriting(bool isPassed) : isPassed(isPassed) {}
    std::vector<Spelled> tokens;

  protected:
    void ExecuteAction() override {
        clang::Preprocessor& preprocessor = getCompilerInstance().getPreprocessor();
        const clang::SourceManager& sources = preprocessor.getSourceManager();
        preprocessor.EnterMainSourceFile();
        std::vector<clang::Token> found;
        if (isPassed)
            found = programTokens(preprocessor, {});
        else
            do
                preprocessor.Lex(found.emplace_back());
            while (found.back().isNot(tok::eof));
        for (const clang::Token& token : found) {
            const clang::SourceLocation at = token.getLocation(),
                                        users = sources.getExpansionLoc(usersPlace(sources, at));
            EXPECT_EQ(sources.getFileID(users), sources.getMainFileID());
            tokens.push_back({spelling(token), token.getKind(), sources.getFileOffset(users),
                              at.getRawEncoding()});
        }
    }

  private:
    bool isPassed;
};

std::vector<Spelled> tokensOf(const std::string& program, bool isPassed) {
    Rewriting action(isPassed);
    std::string messages;
    Compiler compiler(Compiler::Work::library, fileSystem(), messages);
    compiler.execute(action, clang::FrontendInputFile(llvm::MemoryBufferRef(program, "program"),
                                                      clang::InputKind(clang::Language::CXX)));
    EXPECT_EQ(messages.find("error:"), std::string::npos) << messages;
    return std::move(action.tokens);
}

std::string rewritten(const std::string& program) {
    std::string text;
    for (const Spelled& token : tokensOf(program, true))
        text += (text.empty() || token.text.empty() ? "" : " ") + token.text;
    return text;
}

// Names and numbers without what the pass changes: `float4` of msl_float4, `0.5` of 0.5f.
std::vector<std::string> words(const std::vector<Spelled>& tokens) {
    static const std::set<std::string> dropped{
        "device", "constant", "thread", "threadgroup", "vertex",        "fragment", "kernel",
        "metal",  "coherent", "vec",    "bfloat",      "bfloat_vector", "simd",     "object_data"};
    std::vector<std::string> found;
    for (const Spelled& token : tokens) {
        std::string text = token.text;
        if (text.starts_with("msl_"))
            text.erase(0, 4);
        if (token.kind == tok::numeric_constant && !text.starts_with("0x")) {
            text.resize(std::min(text.size(), text.find_first_of("bBhHfFuUlL")));
            text.resize(text.size() - (text.ends_with(".0") ? 2 : 0));
        }
        if (token.kind == tok::string_literal) // `any` of [[depth(any)]]
            text = text.substr(1, text.size() - 2);
        const bool isWord = token.kind == tok::identifier || tok::isLiteral(token.kind);
        if (isWord && !dropped.contains(text))
            found.push_back(text);
    }
    return found;
}

// The program without its includes: the names of the library are then names like others.
std::string withoutHeader(std::string text) {
    for (std::size_t at; (at = text.find("#include")) != std::string::npos;)
        text.replace(at, text.find('\n', at) - at, text.find('\n', at) - at, ' ');
    return text;
}

} // namespace

TEST(Tokens, areRewrittenToWhatClangParses) {
    const std::pair<const char*, const char*> rows[] = {
        {"float4(v, 1)", "msl_float4 ( v , 1 )"},
        {"metal::float2(x, f(y, z))", "metal :: float2 { x , f ( y , z ) }"},
        {"float2(f<a, b>(x), y)", "msl_float2 ( f < a , b > ( x ) , y )"},
        {"float3{a, b.xy}", "msl_float3 ( a , b . xy )"},
        {"void f() { float4 v(a, 1), w = {a, 2}, x{b}; }",
         "void f ( ) { float4 v = msl_float4 ( a , 1 ) , w = msl_float4 ( a , 2 ) , x = msl_float4 "
         "( b ) ; }"},
        {"void f() { decltype(v) w(1, 2), x{3, 4}; m::Of<int, 2>::type n; }",
         "void f ( ) { decltype ( v ) w = msl_make < __remove_cvref ( decltype ( v ) ) > ( 1 , 2 ) "
         ", x "
         "{ 3 , 4 } ; m :: Of < int , 2 > :: type n ; }"},
        {"using V = typename Of<T>::two; struct S { typedef float2 two; }; void f() { typename "
         "Of<T>::two a(1, 2); }",
         "using V = typename Of < T > :: two ; struct S { typedef float2 two ; } ; void f ( ) { "
         "typename Of < T > :: two a = msl_make < typename Of < T > :: two > ( 1 , 2 ) ; }"},
        {"bfloat x = 1.5bf; vec<bfloat, 2> y;",
         "bfloat x = bfloat ( 1.5f ) ; bfloat_vector < 2 > y ;"},
        {"void f() { float2 list[2] = {{1, 2}, float2(3)}; }",
         "void f ( ) { float2 list [ 2 ] = { msl_float2 ( 1 , 2 ) , msl_float2 ( 3 ) } ; }"},
        {"struct S { S(float2 a) : v(a, 1), n(2) {} float3 v; int n; };",
         "struct S { S ( float2 a ) : v ( msl_make < decltype ( v ) > ( a , 1 ) ) , n ( 2 ) { } "
         "float3 v ; int n ; } ;"},
        {"x = (float3)a.b[1] + static_cast<const metal::float2>(c);",
         "x = msl_float3 ( a . b [ 1 ] ) + msl_float2 ( c ) ;"},
        {"template <class T> T f(float x) { return T(x); }",
         "template < class T > T f ( float x ) { return msl_make < T > ( x ) ; }"},
        {"using C = vec<float, 3>; C f() { return C(1); } float g(float C) { return (C)-1; }",
         "using C = vec < float , 3 > ; C f ( ) { return msl_make < C > ( 1 ) ; } float g ( float "
         "C ) { return ( C ) - 1 ; }"},
        {"vec<bool, 2> b; a<vec<vec<int, 2>>> c; d >> e;",
         "bool_vector < 2 > b ; a < vec < vec < int , 2 > > > c ; d >> e ;"},
        {"v[0].xy *= m + 1;", "v [ 0 ] . xy = v [ 0 ] . xy * ( m + 1 ) ;"},
        {"0.5h + 2h + 0x1p3 + 1e3 + .5f + 7",
         "half ( 0.5f ) + half ( 2.0f ) + 0x1p3f + 1e3f + .5f + 7"},
        {"kernel void k(device float* a [[buffer(slot)]], threadgroup int* t) {"
         " threadgroup float x; thread float* p; device int* q; constant int n = 1; }",
         "__attribute__ ( ( msl_kernel ) ) void k ( __attribute__ ( ( msl_device ) ) float * a [ [ "
         "buffer ( ( slot ) ) ] ] , __attribute__ ( ( msl_threadgroup ) ) int * t ) { static "
         "__attribute__ ( ( section ( \"threadgroup\" ) ) ) float x ; float * p ; int * q ; const "
         "int n = 1 ; }"},
        {"fragment float4 f(V v [[user(name)]]);",
         "__attribute__ ( ( msl_fragment ) ) float4 f ( V v [ [ user ( \"name\" ) ] ] ) ;"},
        {"template [[host_name(\"n\")]] kernel void k<int>(device int*);",
         "template __attribute__ ( ( host_name ( \"n\" ) ) ) __attribute__ ( ( msl_kernel ) ) void "
         "k < int > ( __attribute__ ( ( msl_device ) ) int * ) ;"},
        {"int f(device int* p) { return *p; } int f(thread int* p) { return *p; }",
         "int f ( int * p ) { return * p ; }"},
        {"kernel void k(device coherent(device) int* a) { coherent device int* p; int coherent; }",
         "__attribute__ ( ( msl_kernel ) ) void k ( __attribute__ ( ( msl_device ) ) __attribute__ "
         "( ( msl_coherent ) ) int * a ) { int * p ; int coherent ; }"},
        {"using M = mesh<V, P<2>, 3, 1, topology::line>; bool b = mesh < 3 && 2 > topology; using "
         "metal::mesh;",
         "using M = msl_mesh < V , P < 2 > , 3 , 1 , msl_topology :: line > ; bool b = mesh < 3 && "
         "2 > topology ; using metal :: msl_mesh ;"},
        {"[[mesh]] void m(object_data const T& p [[payload]]) { int mesh, object; }",
         "[ [ mesh ] ] void m ( __attribute__ ( ( msl_object_data ) ) const T & p [ [ payload ] ] "
         ") { int mesh , object ; }"},
        // A class's own constructor, a function's parameters and results are no values.
        {"struct T { operator float2(); }; auto f() -> float3 { } float2 g(float2 (&a)[2]);",
         "struct T { operator float2 ( ) ; } ; auto f ( ) -> float3 { } float2 g ( float2 ( & a ) "
         "[ 2 ] ) ;"},
    };
    for (const auto& [program, expected] : rows)
        EXPECT_EQ(rewritten(program), expected) << program;
}

// Clang finds a token again by its location, and reports it where the location leads to.
TEST(Tokens, haveUniqueLocationsThatLeadToTokensOfTheProgram) {
    for (const auto& [name, program] : corpus()) {
        std::set<std::size_t> starts;
        for (const Spelled& token : tokensOf(withoutHeader(program), false)) {
            starts.insert(token.offset);
            if (token.text == ">>")
                starts.insert(token.offset + 1);
        }
        std::set<unsigned> locations;
        std::vector<Spelled> tokens = tokensOf(withoutHeader(program), true);
        tokens.pop_back(); // the end
        for (const Spelled& token : tokens) {
            EXPECT_TRUE(locations.insert(token.location).second) << name << ": " << token.text;
            EXPECT_TRUE(starts.contains(token.offset)) << name << ": " << token.text;
        }
    }
}

TEST(Tokens, loseNoNameAndNoNumber) {
    for (const auto& [name, program] : corpus()) {
        if (name.find("address_space") != std::string::npos || name == "unrolled_loops")
            continue; // has functions that are said twice, or hints that become other words
        const std::string text = withoutHeader(program);
        std::vector<std::string> before = words(tokensOf(text, false)),
                                 after = words(tokensOf(text, true)), lost;
        std::ranges::sort(before); // some words are moved: sizes of arrays, components
        std::ranges::sort(after);
        std::ranges::set_difference(before, after, std::back_inserter(lost));
        EXPECT_EQ(lost, std::vector<std::string>{}) << name;
    }
}

} // namespace tarnwick::msl
