// Rays and their queries (Metal Shading Language 3.1, 2.17, 6.18). A query is a number that stands for
// the variable which the SPIR-V writer declares where the query is made; an acceleration structure is a
// handle, as a texture is. The flags are those of SPIR-V (1.6, 3.RayFlags).
#pragma once

#include "matrices.h"
#include "packed.h"

namespace metal {
namespace raytracing {

struct instancing {};
struct triangle_data {};
struct world_space_data {};

template <class... Tags> struct acceleration_structure {
    uint handle;
};
typedef acceleration_structure<> primitive_acceleration_structure;
typedef acceleration_structure<instancing> instance_acceleration_structure;

struct ray {
    packed_float3 origin, direction;
    float min_distance, max_distance;
    MSL_INLINE ray(float3 origin = float3(0.0f), float3 direction = float3(0.0f),
                   float min_distance = 0.0f, float max_distance = __builtin_inff())
        : origin(origin), direction(direction), min_distance(min_distance),
          max_distance(max_distance) {}
};

enum class intersection_type { none, triangle, bounding_box };
enum class forced_opacity { none, opaque, non_opaque };
enum class triangle_cull_mode { none, front, back };
enum class opacity_cull_mode { none, opaque, non_opaque };
enum class geometry_cull_mode { none = 0, triangle = 1, bounding_box = 2 };
enum class geometry_type { none = 0, triangle = 1, bounding_box = 2, all = 3 };
constexpr geometry_type operator|(geometry_type a, geometry_type b) {
    return geometry_type(int(a) | int(b));
}
constexpr geometry_cull_mode operator|(geometry_cull_mode a, geometry_cull_mode b) {
    return geometry_cull_mode(int(a) | int(b));
}

struct intersection_params {
    uint flags = 0;

    MSL_INLINE void force_opacity(forced_opacity v) { set(0x3, uint(v)); }
    MSL_INLINE void accept_any_intersection(bool v) { set(0x4, v ? 0x4 : 0); }
    MSL_INLINE void set_triangle_cull_mode(triangle_cull_mode v) {
        set(0x30, v == triangle_cull_mode::back ? 0x10 : v == triangle_cull_mode::front ? 0x20 : 0);
    }
    MSL_INLINE void set_opacity_cull_mode(opacity_cull_mode v) { set(0xc0, uint(v) << 6); }
    MSL_INLINE void set_geometry_cull_mode(geometry_cull_mode v) { set(0x300, uint(v) << 8); }
    MSL_INLINE void assume_geometry_type(geometry_type) {}
    MSL_INLINE void assume_identity_transforms(bool) {}

  private:
    MSL_INLINE void set(uint mask, uint bits) { flags = (flags & ~mask) | bits; }
};

struct _query {
    static uint make() asm("msl.ray_query_make");
    static void reset(uint, uint, uint, uint, float3, float, float3,
                      float) asm("msl.ray_query_reset");
    static bool next(uint) asm("msl.ray_query_next");
    static void abort(uint) asm("msl.ray_query_abort");
    static void commit_triangle(uint) asm("msl.ray_query_commit_triangle");
    static void commit_box(uint, float) asm("msl.ray_query_commit_box");
    static bool is_box_opaque(uint) asm("msl.ray_query_box_opaque");
    static float3 origin(uint) asm("msl.ray_query_origin");
    static float3 direction(uint) asm("msl.ray_query_direction");
    static float least(uint) asm("msl.ray_query_least");
};
// Of the candidate, and of the committed intersection, which are numbers in SPIR-V.
#define MSL_BODY(which, n)                                                                         \
    struct _##which {                                                                              \
        static uint type(uint) asm("msl.ray_query_type." n);                                       \
        static float distance(uint) asm("msl.ray_query_distance." n);                              \
        static uint user_instance(uint) asm("msl.ray_query_user_instance." n);                     \
        static uint instance(uint) asm("msl.ray_query_instance." n);                               \
        static uint geometry(uint) asm("msl.ray_query_geometry." n);                               \
        static uint primitive(uint) asm("msl.ray_query_primitive." n);                             \
        static float2 barycentrics(uint) asm("msl.ray_query_barycentrics." n);                     \
        static bool is_front(uint) asm("msl.ray_query_front." n);                                  \
        static float3 object_origin(uint) asm("msl.ray_query_object_origin." n);                   \
        static float3 object_direction(uint) asm("msl.ray_query_object_direction." n);             \
        static float3 to_world(uint, int column) asm("msl.ray_query_to_world." n);                 \
        static float3 to_object(uint, int column) asm("msl.ray_query_to_object." n);               \
    };
MSL_BODY(candidate, "0")
MSL_BODY(committed, "1")
#undef MSL_BODY

template <class... Tags> struct intersection_query {
    uint query;

    MSL_INLINE intersection_query() : query(_query::make()) {}
    template <class... S>
    MSL_INLINE intersection_query(ray r, acceleration_structure<S...> in, uint mask,
                                  intersection_params how = intersection_params())
        : query(_query::make()) {
        reset(r, in, mask, how);
    }
    template <class... S>
    MSL_INLINE intersection_query(ray r, acceleration_structure<S...> in,
                                  intersection_params how = intersection_params())
        : query(_query::make()) {
        reset(r, in, how);
    }
    template <class... S>
    MSL_INLINE void reset(ray r, acceleration_structure<S...> in, uint mask,
                          intersection_params how = intersection_params()) const {
        _query::reset(query, in.handle, how.flags, mask, r.origin, r.min_distance, r.direction,
                      r.max_distance);
    }
    template <class... S>
    MSL_INLINE void reset(ray r, acceleration_structure<S...> in,
                          intersection_params how = intersection_params()) const {
        reset(r, in, 0xffffffffu, how);
    }
    MSL_INLINE bool next() const { return _query::next(query); }
    MSL_INLINE void abort() const { _query::abort(query); }
    MSL_INLINE void commit_triangle_intersection() const { _query::commit_triangle(query); }
    MSL_INLINE void commit_bounding_box_intersection(float distance) const {
        _query::commit_box(query, distance);
    }
    MSL_INLINE bool is_candidate_non_opaque_bounding_box() const {
        return !_query::is_box_opaque(query);
    }
    MSL_INLINE float3 get_world_space_ray_origin() const { return _query::origin(query); }
    MSL_INLINE float3 get_world_space_ray_direction() const { return _query::direction(query); }
    MSL_INLINE float get_ray_min_distance() const { return _query::least(query); }
    MSL_INLINE float get_candidate_triangle_distance() const { return _candidate::distance(query); }
    MSL_INLINE float get_committed_distance() const { return _committed::distance(query); }
    // SPIR-V numbers candidates from 0, committed intersections from 1.
    MSL_INLINE intersection_type get_candidate_intersection_type() const {
        return intersection_type(_candidate::type(query) + 1);
    }
    MSL_INLINE intersection_type get_committed_intersection_type() const {
        return intersection_type(_committed::type(query));
    }
#define MSL_BODY(which)                                                                            \
    MSL_INLINE uint get_##which##_user_instance_id() const {                                       \
        return _##which::user_instance(query);                                                     \
    }                                                                                              \
    MSL_INLINE uint get_##which##_instance_id() const { return _##which::instance(query); }        \
    MSL_INLINE uint get_##which##_geometry_id() const { return _##which::geometry(query); }        \
    MSL_INLINE uint get_##which##_primitive_id() const { return _##which::primitive(query); }      \
    MSL_INLINE float2 get_##which##_triangle_barycentric_coord() const {                           \
        return _##which::barycentrics(query);                                                      \
    }                                                                                              \
    MSL_INLINE bool is_##which##_triangle_front_facing() const {                                   \
        return _##which::is_front(query);                                                          \
    }                                                                                              \
    MSL_INLINE float3 get_##which##_ray_origin() const { return _##which::object_origin(query); }  \
    MSL_INLINE float3 get_##which##_ray_direction() const {                                        \
        return _##which::object_direction(query);                                                  \
    }                                                                                              \
    MSL_INLINE float4x3 get_##which##_object_to_world_transform() const {                          \
        return float4x3(_##which::to_world(query, 0), _##which::to_world(query, 1),                \
                        _##which::to_world(query, 2), _##which::to_world(query, 3));               \
    }                                                                                              \
    MSL_INLINE float4x3 get_##which##_world_to_object_transform() const {                          \
        return float4x3(_##which::to_object(query, 0), _##which::to_object(query, 1),              \
                        _##which::to_object(query, 2), _##which::to_object(query, 3));             \
    }
    MSL_BODY(candidate)
    MSL_BODY(committed)
#undef MSL_BODY
};

// The results have the members of every tag.
template <class... Tags> struct intersection_result {
    intersection_type type;
    float distance;
    uint primitive_id, geometry_id, instance_id, user_instance_id;
    float2 triangle_barycentric_coord;
    bool triangle_front_facing;
};

// Without intersection functions every triangle is hit and no bounding box is.
template <class... Tags> struct intersector : intersection_params {
    typedef intersection_result<Tags...> result_type;

    template <class... S>
    MSL_INLINE result_type intersect(ray r, acceleration_structure<S...> in,
                                     uint mask = 0xffffffffu) const {
        const intersection_params how = *this;
        const intersection_query<Tags...> query(r, in, mask, how);
        while (query.next())
            if (query.get_candidate_intersection_type() == intersection_type::triangle)
                query.commit_triangle_intersection();
        result_type result = {};
        result.type = query.get_committed_intersection_type();
        if (result.type == intersection_type::none)
            return result;
        result.distance = query.get_committed_distance();
        result.primitive_id = query.get_committed_primitive_id();
        result.geometry_id = query.get_committed_geometry_id();
        result.instance_id = query.get_committed_instance_id();
        result.user_instance_id = query.get_committed_user_instance_id();
        result.triangle_barycentric_coord = query.get_committed_triangle_barycentric_coord();
        result.triangle_front_facing = query.is_committed_triangle_front_facing();
        return result;
    }
};

} // namespace raytracing
} // namespace metal
