// Object and mesh functions: the grid that the one starts, the mesh that the other makes (Metal
// Shading Language 3.1, 2.19, 5.1.7 and 5.1.8). Both are handles; the compiler knows the types of
// the outputs. The token pass gives `mesh` and `topology` these names, so that programs may have
// functions and variables called so.
#pragma once

#include "traits.h"
#include "construct.h"

namespace metal {

void _mesh_grid(uint, uint, uint) asm("msl.mesh_grid.1");
void _mesh_count(uint) asm("msl.mesh_count.1");
void _mesh_index(uint at, uint vertex_index) asm("msl.mesh_index.1");
// Store the members of a record in the outputs of a vertex or a primitive.
void _mesh_vertex(uint at, const void* record) asm("msl.mesh_vertex.1");
void _mesh_primitive(uint at, const void* record) asm("msl.mesh_primitive.1");

struct mesh_grid_properties {
    uint _handle;
    MSL_INLINE void set_threadgroups_per_grid(uint3 size) const { _mesh_grid(size.x, size.y, size.z); }
};

enum class msl_topology { point, line, triangle };

// Stands for the record of a mesh without values of primitives.
struct _no_primitive {};

template <class V, class P, uint NV, uint NP, msl_topology T> struct msl_mesh {
    uint _handle;

    static constexpr uint max_vertices = NV, max_primitives = NP;
    static constexpr uint indices_per_primitive = uint(T) + 1, max_indices = NP * (uint(T) + 1);
    typedef conditional_t<is_same_v<P, void>, _no_primitive, P> _primitive;

    MSL_INLINE void set_primitive_count(uint count) const { _mesh_count(count); }
    MSL_INLINE void set_vertex(uint at, const V& record) const { _mesh_vertex(at, &record); }
    MSL_INLINE void set_primitive(uint at, const _primitive& record) const {
        _mesh_primitive(at, &record);
    }
    MSL_INLINE void set_index(uint at, uchar vertex_index) const { _mesh_index(at, vertex_index); }
    MSL_INLINE void set_indices(uint at, uchar2 two) const {
        _mesh_index(at, two.x), _mesh_index(at + 1, two.y);
    }
    MSL_INLINE void set_indices(uint at, uchar4 four) const {
        set_indices(at, four.xy), set_indices(at + 2, four.zw);
    }
};

} // namespace metal
