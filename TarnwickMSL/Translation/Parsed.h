// The result of the front end, and its options.
#pragma once

#include "TarnwickMSL/Compilation.h"
#include "TarnwickMSL/Constants.h"
#include "TarnwickMSL/IncludeFolder.h"
#include "TarnwickMSL/Translation/Signature.h"
#include "TarnwickMSL/Translation/StepTimes.h"

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace llvm {
class Module;
} // namespace llvm

namespace tarnwick::msl {

// A set of functions of a program, by symbol.
using Symbols = std::set<std::string>;

struct Parsed {
    std::unique_ptr<llvm::Module> module;     // null when there were errors
    std::vector<EntrySignature> entries;      // in source order
    std::vector<ConstantSignature> constants; // without a value, in source order
    std::string messages;                     // Clang's text, with "N errors generated." at its end
    std::vector<Diagnostic> diagnostics;      // the same as data
    std::vector<std::string> files;           // read from the folders of includes
    Reflection reflection;                    // if ParseOptions::reflects
    bool failed = false;
    // Equal for two results if the second one has the declarations of the first one, with other
    // numbers.
    std::shared_ptr<const void> declarations;
};

// Whether instructions keep their lines, for messages. Keeping them takes time.
enum class Places : bool { left, kept };

struct ParseOptions {
    Places places = Places::left;
    std::string moreWarningsIn; // Compile.h
    ConstantValues constants;   // Compile.h
    std::vector<IncludeFolder> includes;
    bool reflects = false;
    StepTimes* times = nullptr;
    // Called if the text has the declarations of an earlier result, Parsed::declarations, and only
    // the functions `changed` have other numbers. Gives the functions that the module may lack.
    std::function<Symbols(const std::shared_ptr<const void>& declarations, const Symbols& changed)>
        omitted;
};

} // namespace tarnwick::msl
