// The body of a function that the layer writes around the functions of points.
#pragma once

#include "TarnwickSpirv/FunctionBody.h"

#include <cstdint>

namespace tarnwick::gpu {

using spirv::Id;
using spirv::Words;

class PointBody : public spirv::FunctionBody {
  public:
    explicit PointBody(spirv::Module& module);

    Id load(Id variable);
    // The value of a block or array at `path`: constant or computed indices.
    Id load(spv::StorageClass storage, Id type, Id variable, spirv::Operands path);
    void store(Id variable, Id value) { act(spv::Op::OpStore, {variable, value}); }
    // A pointer to one number of a buffer.
    Id placeIn(Id buffer, Id number, Id index);
    Id part(Id composite, Id type, std::uint32_t lane) {
        return emit(spv::Op::OpCompositeExtract, type, {composite, lane});
    }
    Id both(Id first, Id second) { return emit(spv::Op::OpLogicalAnd, boolean, {first, second}); }
    void call(Id function);

    Id label() { return module.newId(); }
    void begin(Id block) { act(spv::Op::OpLabel, {block}); }
    void branch(Id block) { act(spv::Op::OpBranch, {block}); }
    // Goes to `then` or on to `merge`, where the blocks from `then` on end.
    void branchIf(Id condition, Id then, Id merge);

    // Returns, and adds the function to the module.
    void finish(Id function);

    const Id nothing, boolean, word, number; // void, bool, uint, float
    const Id words2, numbers2, numbers4;     // their vectors
};

// A storage buffer of numbers, `bytes` bytes each.
Id numbersBuffer(spirv::Module& module, Id number, std::uint32_t bytes, std::uint32_t binding);

} // namespace tarnwick::gpu
