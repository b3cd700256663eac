// Clang with this language's options, files and messages.
#pragma once

#include "TarnwickMSL/Translation/FrontEnd/Messages.h"

#include <clang/Frontend/CompilerInstance.h>
#include <clang/Frontend/FrontendAction.h>
#include <clang/Frontend/FrontendOptions.h>
#include <llvm/Support/VirtualFileSystem.h>
#include <llvm/Support/raw_ostream.h>

#include <string>
#include <string_view>
#include <vector>

namespace tarnwick::msl {

using FileSystem = llvm::IntrusiveRefCntPtr<llvm::vfs::FileSystem>;

// The header that includes the whole library, and the name of its precompiled form.
inline constexpr const char* prefixFile = "/metal/prefix.h";
inline constexpr const char* precompiledFile = "/metal/metal.pch";

// The library's files in memory. `precompiled` is not copied.
FileSystem fileSystem(std::string_view precompiled = {});

// One list for the library and the programs: a precompiled header requires equal options.
std::vector<const char*> compilerOptions();

// An action on one input of this language.
class MetalAction : public clang::ASTFrontendAction {
  protected:
    bool BeginInvocation(clang::CompilerInstance& instance) override;
};

// Clang over one input, or over several programs.
class Compiler {
  public:
    enum class Work { library, program };
    // Messages are appended to `text`. `folders` are the names of folders for #include.
    Compiler(Work work, FileSystem files, std::string& text, std::string moreWarningsIn = {},
             const std::vector<std::string>& folders = {});

    // False if there were errors.
    bool execute(clang::FrontendAction& action, clang::FrontendInputFile input);

    // Prepares Clang for the input without executing the action. False if there were errors.
    bool begin(clang::FrontendAction& action, const clang::FrontendInputFile& input);
    // Forgets the messages of the program before. With `keepsPlaces`, instructions keep their lines
    // (Places::kept).
    void nextProgram(bool keepsPlaces);
    // Appends the number of messages.
    void endProgram();
    // The messages of the program as data, since the last call.
    std::vector<Diagnostic> takeDiagnostics() { return messages.take(); }
    clang::CompilerInstance& clang() { return instance; }

  private:
    llvm::raw_string_ostream out;
    Messages messages;
    clang::CompilerInstance instance;
};

} // namespace tarnwick::msl
