// Clang with the standard library read, for several programs.
//
// Half of the front end's time for a program of a hundred lines is the reading of the library's
// declarations from their precompiled form. So one ASTContext, which keeps what it has read, serves
// many programs. Each program has its own Sema, its own file and its own consumer; after it, its
// names and its macros are removed. After a program that had errors, or that changed declarations
// or macros of the library, the session takes no other.
//
// The declarations of the last program remain, for the same text with other numbers (Numbers.h).
#pragma once

#include "TarnwickMSL/Translation/FrontEnd/Compiler.h"
#include "TarnwickMSL/Translation/FrontEnd/Numbers.h"
#include "TarnwickMSL/Translation/FrontEnd/Session/FunctionSymbols.h"
#include "TarnwickMSL/Translation/FrontEnd/Session/LibraryUses.h"
#include "TarnwickMSL/Translation/Parsed.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick::msl {

class Macros;

class Session {
  public:
    // `includes` are the names of the folders for #include. Such a session takes one program:
    // Clang keeps files that it has read, and the host may have changed them since.
    Session(FileSystem files, const std::string& moreWarningsIn,
            const std::vector<std::string>& includes = {});
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // Whether `parse` can take a program with these options.
    bool takes(const ParseOptions& options) const {
        return !isOver && options.moreWarningsIn == moreWarningsIn;
    }
    // Whether it can take any text: another program, or the last one with other numbers.
    bool isOpen() const { return !isOver || last; }
    Parsed parse(std::string_view source, llvm::LLVMContext& context, const ParseOptions& options);
    // Whether the last program has a name that it does not declare, and Clang looked for similar
    // ones in types that programs before it have read too.
    bool hasGuessed() const { return isGuess; }
    clang::Preprocessor& preprocessor() { return compiler.clang().getPreprocessor(); }
    // Removes the names of the last program. Before the next call of `takes`, and best when nobody
    // waits.
    void tidy();
    // The same result for a text that differs from the last one only in numbers; absent for others.
    std::optional<Parsed> again(std::string_view source, llvm::LLVMContext& context,
                                const ParseOptions& options);

  private:
    std::string text;           // of the program's messages
    std::string moreWarningsIn; // ParseOptions
    Compiler compiler;
    std::unique_ptr<clang::FrontendAction> action; // begun, and never executed
    Macros* macros = nullptr;                      // the preprocessor owns it
    LibraryUses libraryUses;
    std::optional<FunctionSymbols> symbols;            // made when they are needed
    std::vector<clang::TypedefNameDecl*> vectorTypes;  // of the library; Clang reports them once
    clang::NamespaceDecl* standardNamespace = nullptr; // of the library; the same
    bool isBegun = false, isOver = false;
    bool isUsed = false, isGuess = false;
    bool isUntidy = false;     // the names of the last program are there
    std::size_t textBytes = 0; // of all programs
    struct Last {
        std::string source;
        std::shared_ptr<const void> declarations; // Parsed
        ConstantValues constants;
        std::optional<Numbers> numbers; // made when they are needed
    };
    std::optional<Last> last; // the last program, if it had no messages

    void start(std::string_view source);
    Symbols omitted(const ParseOptions& options);
    void parseInto(Parsed& parsed, llvm::LLVMContext& context, const ParseOptions& options);
    bool check();
    // Without code of the functions `omitted`.
    void generate(Parsed& parsed, llvm::LLVMContext& context, const ParseOptions& options,
                  const Symbols& omitted = {});
    void finish(Parsed& parsed);
};

// The session of a StandardLibrary; null before the first program and after a session's end.
struct KeptSession {
    std::unique_ptr<Session> value;
};

} // namespace tarnwick::msl
