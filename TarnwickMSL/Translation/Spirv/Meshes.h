// Object and mesh functions (SPV_EXT_mesh_shader): their modes, their start and their end.
//
// In Metal any invocation may set the grid, the number of primitives and single indices, at any
// time. In SPIR-V all invocations together say the grid at their end; the numbers of vertices and
// primitives before the first output; and the indices of a primitive at once. Therefore the
// function keeps these in threadgroup memory. A mesh always has its maximum numbers of vertices and
// primitives. At the end all invocations wait for each other; then they write the indices, and cull
// the primitives beyond the number that was set.
#pragma once

#include "TarnwickMSL/Translation/Spirv/Memory.h"

namespace tarnwick::msl::spirv {

class Meshes {
  public:
    Meshes(Body& body, Memory& memory, const ShaderModule& shader)
        : body_(body), memory_(memory), shader_(shader) {}

    void modes();
    void begin(); // before the first output
    void end();   // in place of the return

  private:
    // The variable of the threadgroup memory; 0 if the code has none.
    Id shared(const char* name);
    Id word(Id memory, Id index);
    Id indices(Id primitive, Id live);
    void finishPrimitives();
    void finishPrimitive(Id primitive, Id count);
    void startMeshes();

    Body& body_;
    Memory& memory_;
    const ShaderModule& shader_;
    Id indicesVariable_ = 0, culledVariable_ = 0; // built-ins
};

} // namespace tarnwick::msl::spirv
