// Tessellation: the factors that a kernel writes and the control points that a post-tessellation
// vertex function reads (Metal Shading Language 3.1, 5.1.1 and 5.2.4).
#pragma once

#include "construct.h"

// In the order of the edges u = 0, v = 0, w = 0 of a triangle and u = 0, v = 0, u = 1, v = 1 of a
// quad; inside a quad the divisions along u, then along v.
struct MTLTriangleTessellationFactorsHalf {
    half edgeTessellationFactor[3];
    half insideTessellationFactor;
};
struct MTLQuadTessellationFactorsHalf {
    half edgeTessellationFactor[4];
    half insideTessellationFactor[2];
};

namespace metal {

using ::MTLQuadTessellationFactorsHalf, ::MTLTriangleTessellationFactorsHalf;

// Writes the members of the control point into the record; the compiler knows its type.
void _control_point(void* to, uint index) asm("msl.control_point.1");
uint _control_points() asm("msl.control_points.1");

template <class T> struct patch_control_point {
    MSL_INLINE size_t size() const { return _control_points(); }
    MSL_INLINE T operator[](size_t index) const {
        T point;
        _control_point(&point, uint(index));
        return point;
    }

    struct iterator {
        uint index;
        MSL_INLINE T operator*() const { return patch_control_point()[index]; }
        MSL_INLINE iterator& operator++() { return ++index, *this; }
        MSL_INLINE bool operator==(iterator other) const { return index == other.index; }
        MSL_INLINE bool operator!=(iterator other) const { return index != other.index; }
    };
    MSL_INLINE iterator begin() const { return {0}; }
    MSL_INLINE iterator end() const { return {_control_points()}; }
};

} // namespace metal
