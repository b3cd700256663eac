// The result of the front end, and its options.
#pragma once

#include "TarnwickMSL/Constants.h"
#include "TarnwickMSL/Translation/Signature.h"
#include "TarnwickMSL/Translation/StepTimes.h"

#include <memory>
#include <string>
#include <vector>

namespace llvm {
class Module;
} // namespace llvm

namespace tarnwick::msl {

struct Parsed {
    std::unique_ptr<llvm::Module> module;     // null when there were errors
    std::vector<EntrySignature> entries;      // in source order
    std::vector<ConstantSignature> constants; // without a value, in source order
    std::string messages;                     // Clang's text, with "N errors generated." at its end
    bool failed = false;
};

// Whether instructions keep their lines, for messages. Keeping them takes time.
enum class Places : bool { left, kept };

struct ParseOptions {
    Places places = Places::left;
    std::string moreWarningsIn; // Compile.h
    ConstantValues constants;   // Compile.h
    StepTimes* times = nullptr;
};

} // namespace tarnwick::msl
