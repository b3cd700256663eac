// The compilation between two steps as text, and back.
//
// The text is LLVM assembly. Comment lines before it have the records beside the module: one line
// for each, with its word and its fields, "; texture index=3 shape=2d". Fields with their default
// are left out. Values of an argument follow its line; "; dead code" says that the step `tidy` has
// work to do.
#pragma once

#include "TarnwickMSL/Translation/Passes/Forms/Work.h"

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tarnwick::msl {

// The text cannot be read, or does not have what a step needs; what() is a sentence.
struct TextError : std::invalid_argument {
    using std::invalid_argument::invalid_argument;
};

std::string text(const llvm::Module& program, const std::vector<EntrySignature>& entries,
                 const std::vector<ConstantSignature>& constants);
std::string text(const ShaderModule& shader);

// The whole state: the program's text, or the shader's with the signatures while a step still needs
// them. After the last step, the listing of its SPIR-V.
std::string text(const Work& work);

// Owns all that a Work refers to.
struct ReadWork {
    std::unique_ptr<llvm::LLVMContext> context;
    std::unique_ptr<llvm::Module> program;
    std::vector<EntrySignature> entries;
    std::unique_ptr<Work> work;
};

// Reads what text(work) writes. The module is the shader's if it has a function `main` or the text
// has a line "; shader", else the program's, of which the step `cut` takes the first entry point.
// Default data layout: the front end's. Throws TextError.
ReadWork readWork(std::string_view text);

} // namespace tarnwick::msl
