// Small modules from text, lowered, and run natively before and after.
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"

#include <llvm/IR/LLVMContext.h>

#include <string>

namespace tarnwick::msl::test {

// A fragment function `i32 @f(i32 a, i32 b)` with what it needs around it.
EntrySignature flatFragment();

// Reads LLVM assembly; the layout and triple are those of the front end.
std::unique_ptr<llvm::Module> parse(const std::string& assembly, llvm::LLVMContext& context);

// Runs the steps on the whole program.
void prepare(llvm::Module& program, const std::vector<EntrySignature>& entries);

// Runs the steps on one entry point of a prepared program, but for the SPIR-V.
ShaderModule lower(llvm::Module& program, const EntrySignature& entry,
                   const std::vector<EntrySignature>& entries);

// Both for the module's one entry; expects checkForm to find nothing.
ShaderModule lowered(const std::string& assembly, llvm::LLVMContext& context,
                     const EntrySignature& entry);

struct Outcome {
    std::uint32_t value = 0;
    std::uint32_t report = 0; // of the loop budget
    bool operator==(const Outcome&) const = default;
};

// Machine code of one module.
class Native {
  public:
    explicit Native(const llvm::Module& module);
    ~Native();
    void* address(const std::string& symbol) const; // null for an unknown symbol

  private:
    struct Engine;
    std::unique_ptr<Engine> engine_;
};

// Runs the assembly's own @f, and the structured main of flatFragment().
class Twins {
  public:
    explicit Twins(const std::string& assembly);
    std::uint32_t original(std::uint32_t a, std::uint32_t b) const;
    Outcome structured(std::uint32_t a, std::uint32_t b) const;

    static std::uint32_t budget; // what msl.loop_budget gives

  private:
    std::unique_ptr<llvm::LLVMContext> context_;

  public:
    ShaderModule shader;

  private:
    std::unique_ptr<Native> before_, after_;
};

} // namespace tarnwick::msl::test
