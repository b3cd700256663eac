// The cleaned functions of a program and the results of its entry points, for the next program if
// it differs only in numbers. The source is Passes/Calls/KeptFunctions.cpp.
//
// Functions with several callers are kept as the step `inline` leaves them, and so are those of
// which it unrolled loops. Another function becomes a part of its caller, so its code is generated
// again. The results of entry points are kept, too.
#pragma once

#include "TarnwickMSL/EntryPoint.h"
#include "TarnwickMSL/Translation/Parsed.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace llvm {
class Function;
class Module;
} // namespace llvm

namespace tarnwick::msl {

class KeptFunctions {
  public:
    // A function of the program, before inlining.
    struct Node {
        std::vector<std::string> callees; // symbols
        bool isKept = false;
    };

    KeptFunctions();
    ~KeptFunctions();
    KeptFunctions(const KeptFunctions&) = delete;
    KeptFunctions& operator=(const KeptFunctions&) = delete;

    // Another program follows.
    void clear();
    // Frees what is not kept any more. Best when nobody waits.
    void tidy() { old_.clear(); }
    // The same program follows, with other numbers in these functions. Gives the functions of which
    // no code is needed, entry points included.
    Symbols follow(const Symbols& changed);

    // Before inlining: moves the kept functions that the module calls into it.
    void moveTo(llvm::Module& module);
    bool has(const llvm::Function& function) const;
    // After inlining: moves a function that the module had from here out of there.
    void takeBack(llvm::Function& function);
    // The same for another function, if it is kept. Notes it in any case.
    void take(llvm::Function& function, Node node);

    // Of an entry point; null if it must be translated.
    const EntryPoint* result(const std::string& symbol) const;
    void setResult(const std::string& symbol, const EntryPoint& result);

  private:
    std::unique_ptr<llvm::Module> module_; // has the kept functions; null while there are none
    std::vector<std::unique_ptr<llvm::Module>> old_;
    std::map<std::string, Node> nodes_;         // by symbol
    std::map<std::string, EntryPoint> results_; // by symbol

    Symbols withCallers(Symbols functions) const;
    void addGenerated(const std::string& symbol, Symbols& generated) const;
    void forget(const std::string& symbol);
};

// Whether a function can be kept: it names no variable of its module and no record, because code
// that is generated again has its own ones.
bool mayBeKept(const llvm::Function& function);

} // namespace tarnwick::msl
