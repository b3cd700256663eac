// LLVM's types and constants as SPIR-V's, each declared once.
#pragma once

#include "TarnwickMSL/Translation/Reading/Lanes.h"
#include "TarnwickSpirv/Module.h"

#include <llvm/ADT/DenseMap.h>
#include <llvm/IR/Constants.h>
#include <llvm/IR/DataLayout.h>
#include <llvm/IR/DerivedTypes.h>

#include <optional>

namespace tarnwick::msl::spirv {

using tarnwick::spirv::Id;
using tarnwick::spirv::Module;
using tarnwick::spirv::Operands;
using tarnwick::spirv::Words;

using namespace reading;

class Types {
  public:
    Types(Module& module, llvm::LLVMContext& context, const llvm::DataLayout& layout)
        : module_(module), context_(context), layout_(layout) {}

    llvm::LLVMContext& context() const { return context_; }
    const llvm::DataLayout& dataLayout() const { return layout_; }

    // The type of values. All integers are unsigned. Throws CompilerFault on a width that SPIR-V
    // does not have.
    Id of(llvm::Type* type) { return inMemory(type, Layout::plain); }
    Id signedScalar() { return module_.type(spv::Op::OpTypeInt, {32, 1}); }
    // Signed 32-bit integers: a scalar for one lane, otherwise a vector.
    Id signedNumbers(unsigned lanes) {
        return lanes == 1 ? signedScalar() : module_.vector(signedScalar(), lanes);
    }
    // As signed textures give them.
    Id signedVector() { return signedNumbers(4); }
    Id inMemory(llvm::Type* type, Layout layout);
    Id array(Id element, std::uint32_t count);

    // The index in the SPIR-V struct of a member of the LLVM struct; absent for padding bytes,
    // which explicit layouts leave out.
    std::optional<std::uint32_t> member(llvm::StructType* type, unsigned index,
                                        Layout layout) const;

  private:
    Id declare(llvm::Type* type, Layout layout);
    Id integer(unsigned bits);
    Id structure(llvm::StructType* type, Layout layout);

    Module& module_;
    llvm::LLVMContext& context_;
    const llvm::DataLayout& layout_;
    llvm::DenseMap<llvm::Type*, Id> types_[2];
    llvm::DenseMap<std::pair<std::uint32_t, Id>, Id> arrays_;
};

class Constants {
  public:
    Constants(Module& module, Types& types) : module_(module), types_(types) {}

    Id of(const llvm::Constant* constant);
    Id word(std::uint32_t value);
    Id signedWord(std::int32_t value) { return word(static_cast<std::uint32_t>(value)); }
    // A scalar, or a vector whose lanes all have the value. Floats are rounded to nearest.
    Id integer(llvm::Type* type, std::uint64_t value);
    Id real(llvm::Type* type, double value);
    Id null(llvm::Type* type);
    Id nullOf(Id type);
    Id composite(Id type, Operands parts);
    // A specialisation constant of 32 bits and its default value.
    Id specialisation(std::uint32_t number, std::uint32_t value);
    // The same of any scalar type, 0 by default.
    Id specialisation(std::uint32_t number, llvm::Type* type);
    bool hasSpecialisation(std::uint32_t number) const { return specialisations_.contains(number); }

  private:
    Id declare(const llvm::Constant* constant);
    Id scalar(llvm::Type* type, const llvm::APInt& bits);

    Module& module_;
    Types& types_;
    llvm::DenseMap<const llvm::Constant*, Id> constants_;
    llvm::DenseMap<std::uint32_t, Id> specialisations_;
};

} // namespace tarnwick::msl::spirv
