// The function being written: its words, the ids of LLVM's values, and the instructions that
// several files write.
#pragma once

#include "TarnwickMSL/EntryPoint.h"
#include "TarnwickMSL/Translation/Spirv/Types.h"
#include "TarnwickSpirv/FunctionBody.h"

#include <llvm/IR/Instructions.h>

#include <functional>
#include <string>

namespace tarnwick::msl::spirv {

class Body : public tarnwick::spirv::FunctionBody {
  public:
    Body(Module& module, llvm::LLVMContext& context, const llvm::DataLayout& layout, Stage stage)
        : FunctionBody(module), stage(stage), types(module, context, layout),
          constants(module, types) {}

    const Stage stage;
    bool needsStandardSamples = false, needsEightLanes = false; // EntryPoint.h
    // The log between its start and its end (Logs.h).
    struct Log {
        std::string format;
        llvm::SmallVector<Id, 8> values;
    };
    Log log;
    Types types;
    Constants constants;

    // The id of a value. An instruction without an id is written here by `onDemand`; throws
    // CompilerFault if that writes nothing.
    Id id(const llvm::Value* value);
    // Writes an instruction at its use and returns the id; 0 if it is written at its own place
    // instead. Each use has its own copy, because one use need not dominate the next.
    std::function<Id(const llvm::Instruction&)> onDemand;
    void set(const llvm::Value* value, Id id) { ids_[value] = id; }
    bool has(const llvm::Value* value) const { return ids_.contains(value); }
    // The ids of the operands [first, last).
    llvm::SmallVector<Id, 4> operands(const llvm::User& user, unsigned first, unsigned last);

    using FunctionBody::emit;
    Id emit(spv::Op op, llvm::Type* type, Operands first, Operands second = {}) {
        return emit(op, types.of(type), first, second);
    }
    Id extended(GLSLstd450 instruction, llvm::Type* type, Operands operands) {
        return FunctionBody::extended(instruction, types.of(type), operands);
    }
    Id label(const llvm::BasicBlock* block);

    // Selects scalars, or each lane of vectors.
    Id select(llvm::Type* type, Id condition, Id yes, Id no) {
        return emit(spv::Op::OpSelect, type, {condition, yes, no});
    }
    Id bitcast(llvm::Type* to, llvm::Type* from, Id value);
    Id negated(llvm::Type* boolean, Id value) {
        return emit(spv::Op::OpLogicalNot, boolean, {value});
    }
    // Converts integers or floats to the width of `to`, which may be the same.
    Id resized(llvm::Type* to, llvm::Type* from, Id value, bool isSigned);
    Id splat(llvm::Type* vector, Id scalar);

    llvm::Type* i1() { return llvm::Type::getInt1Ty(types.context()); }
    llvm::Type* i32() { return llvm::Type::getInt32Ty(types.context()); }
    llvm::Type* f32() { return llvm::Type::getFloatTy(types.context()); }

    // Variables of built-ins, by the built-in and whether it is an input.
    llvm::DenseMap<std::pair<std::uint32_t, std::uint32_t>, Id> builtIns;

  private:
    llvm::DenseMap<const llvm::Value*, Id> ids_;
    llvm::DenseMap<const llvm::BasicBlock*, Id> labels_;
};

} // namespace tarnwick::msl::spirv
