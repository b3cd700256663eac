// Step 1: program text to an LLVM module, by Clang. See docs/compiler.md. StandardLibrary is in
// FrontEnd/StandardLibrary.cpp.
#pragma once

#include "TarnwickMSL/Translation/Parsed.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace llvm {
class LLVMContext;
} // namespace llvm

namespace tarnwick::msl {

struct KeptSession;

// The standard library in precompiled form. Make it once per process, or read it from the file that
// the build wrote. Parses may share it, one at a time.
class StandardLibrary {
  public:
    // Builds it from the library's own text: 40 to 75 ms. Throws std::runtime_error with Clang's
    // text if the library itself does not compile.
    static StandardLibrary build();
    // From the bytes of precompiled(), which must be of the same build of the compiler.
    static StandardLibrary fromPrecompiled(std::string bytes);
    // 16 hexadecimal digits that identify this library and compiler, for files with the bytes.
    static std::string fingerprint();
    const std::string& precompiled() const { return *precompiled_; }
    // Whether the next program can use what earlier ones read of the library. False at first and
    // after a program with errors.
    bool isOpen() const;
    // Removes what the last program left in Clang. The next parse would, but somebody waits for it.
    void tidy() const;
    // Every function that the library declares for programs, each overload on its own, sorted:
    // "metal::precise::sin: float3 (float3)". Compiles the library's text; for tests.
    static std::vector<std::string> functions();

  private:
    friend Parsed parse(std::string_view source, const StandardLibrary& library,
                        llvm::LLVMContext& context, const ParseOptions& options);
    // Shared with copies and with files_, Clang's view of them.
    std::shared_ptr<const std::string> precompiled_;
    std::shared_ptr<void> files_;
    std::shared_ptr<KeptSession> session_; // for the next program
};

Parsed parse(std::string_view source, const StandardLibrary& library, llvm::LLVMContext& context,
             const ParseOptions& options = {});

} // namespace tarnwick::msl
