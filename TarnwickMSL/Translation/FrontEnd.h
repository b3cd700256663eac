// Step 1: program text to an LLVM module, by Clang. See docs/compiler.md. StandardLibrary is in
// FrontEnd/StandardLibrary.cpp.
#pragma once

#include "TarnwickMSL/Translation/Signature.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace llvm {
class LLVMContext;
class Module;
} // namespace llvm

namespace tarnwick::msl {

struct Parsed;
struct ParseOptions;

// The standard library in precompiled form. Made once per process (or read from a file that the
// build made), then used by any number of parses, one at a time.
class StandardLibrary {
  public:
    // Builds it from the library's own text: 40 to 75 ms. Throws std::runtime_error with Clang's
    // text if the library itself does not compile.
    static StandardLibrary build();
    // Takes bytes that build().precompiled() gave, from this very build of the compiler.
    static StandardLibrary fromPrecompiled(std::string bytes);
    // 16 characters that tell this library and compiler from others, for those who keep the bytes.
    static std::string fingerprint();
    const std::string& precompiled() const { return *precompiled_; }
    // Every function that the library declares for programs, each overload on its own, sorted:
    // "metal::precise::sin: float3 (float3)". Compiles the library's text; for tests.
    static std::vector<std::string> functions();

  private:
    friend Parsed parse(std::string_view source, const StandardLibrary& library,
                        llvm::LLVMContext& context, const ParseOptions& options);
    // Shared with copies and with the file system that holds it for Clang.
    std::shared_ptr<const std::string> precompiled_;
    std::shared_ptr<void> files_;
};

struct Parsed {
    std::unique_ptr<llvm::Module> module; // null when there were errors
    std::vector<EntrySignature> entries;  // in source order
    std::string messages;                 // Clang's text, with "N errors generated." at its end
    bool failed = false;
};

// Whether instructions know their lines, for messages: it costs a little.
enum class Places : bool { left, kept };

struct ParseOptions {
    Places places = Places::left;
    std::string moreWarningsIn; // Compile.h
};

Parsed parse(std::string_view source, const StandardLibrary& library, llvm::LLVMContext& context,
             const ParseOptions& options = {});

} // namespace tarnwick::msl
