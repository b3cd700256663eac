// Writes the body of one function into a SPIR-V module.
#pragma once

#include "TarnwickGPU/Points/SpirvCode.h"

#include <spirv/unified1/GLSL.std.450.h>

namespace tarnwick::gpu {

class SpirvBody {
  public:
    explicit SpirvBody(SpirvCode& code);

    Id make(spv::Op op, Id type, std::initializer_list<std::uint32_t> operands);
    void act(spv::Op op, std::initializer_list<std::uint32_t> operands);
    Id extended(GLSLstd450 operation, Id type, std::initializer_list<std::uint32_t> operands);

    Id load(Id variable);
    void store(Id variable, Id value) { act(spv::Op::OpStore, {variable, value}); }
    // What lies in a block or array at `path`, constant or computed indices.
    Id load(spv::StorageClass storage, Id type, Id variable, std::initializer_list<Id> path);
    // A pointer to one of a buffer's numbers.
    Id placeIn(Id buffer, Id number, Id index);
    Id part(Id composite, Id type, std::uint32_t lane) {
        return make(spv::Op::OpCompositeExtract, type, {composite, lane});
    }
    Id both(Id first, Id second) { return make(spv::Op::OpLogicalAnd, boolean, {first, second}); }
    void call(Id function);
    // A variable of the function, zero at first.
    Id local(Id type);

    Id label() { return code.newId(); }
    void begin(Id block) { act(spv::Op::OpLabel, {block}); }
    void branch(Id block) { act(spv::Op::OpBranch, {block}); }
    // Goes to `then` or on to `merge`, where what `then` begins ends.
    void branchIf(Id condition, Id then, Id merge);
    void leave() { act(spv::Op::OpReturn, {}); }

    // Ends the function, void and without parameters, and adds it to the module.
    void finish(Id function);

    SpirvCode& code;
    const Id nothing, boolean, word, number; // void, bool, uint, float
    const Id words2, numbers2, numbers4;     // their vectors

  private:
    Words locals_, words_;
};

} // namespace tarnwick::gpu
