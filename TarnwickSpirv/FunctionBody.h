// The instructions of one function of a module.
#pragma once

#include "TarnwickSpirv/Module.h"

#include <spirv/unified1/GLSL.std.450.h>

namespace tarnwick::spirv {

class FunctionBody {
  public:
    explicit FunctionBody(Module& module) : module(module) {}

    // Appends an instruction with a result and returns the id of the result. The operands are the
    // two lists, one after the other.
    Id emit(spv::Op op, Id type, Operands first, Operands second = {});
    // Appends an instruction without a result.
    void act(spv::Op op, Operands operands) { append(code, op, operands); }
    // Appends an instruction of GLSL.std.450.
    Id extended(GLSLstd450 instruction, Id type, Operands operands);
    // A variable of the function.
    Id local(Id pointee, Id initialiser = 0);
    // The next parameter of the function. Default: no parameters.
    Id parameter(Id type);

    // The type of the function. A result of 0 is void.
    Id type(Id result = 0);
    // Adds the function to the module. Its first block's label is `entry`; 0: a new label. The code
    // must end with a terminator.
    void finish(Id function, Id entry = 0, Id result = 0);

    Module& module;
    Words code;   // all blocks, without the first one's label and variables
    Words locals; // the variables

  private:
    Words parameters_, parameterTypes_;
};

} // namespace tarnwick::spirv
