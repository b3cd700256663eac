/*
 * Compiles programs in the Metal Shading Language 3.1 to SPIR-V 1.6 for Vulkan 1.3, and says what
 * they bind. For C11 and C++.
 *
 * The compiler works in child processes (tarnwick-msl-worker), so a program that makes it crash or
 * run for ever ends as a result of tarnwick_msl_compile. The library has no other threads, no
 * variables of the process and no signal handlers, and never ends the process.
 *
 * A compiler may be used by several threads at once; each gets a child of its own. Options and
 * results may be read by several threads at once and changed by one. Other compilers are
 * independent. After fork(), a child process makes compilers of its own.
 *
 * Text is UTF-8 and ends with a zero byte. Text and arrays that a function gives belong to the
 * result that it was called with, and end with it.
 *
 * Records begin with `struct_size`. A caller sets it to sizeof the record: so a library of a later
 * release, whose records have more members, fills those that the caller knows. Enumerations may get
 * more values; a caller ignores those that it does not know.
 *
 * docs/embedding.md explains the use with Vulkan.
 */
#ifndef TARNWICK_MSL_H
#define TARNWICK_MSL_H

#include <stddef.h>
#include <stdint.h>

#if defined(__GNUC__)
#define TARNWICK_MSL_FUNCTION __attribute__((visibility("default")))
#else
#define TARNWICK_MSL_FUNCTION
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* The release of this header and of the library in use: major * 65536 + minor. Within a major
 * number, functions and members of records are only added. */
#define TARNWICK_MSL_VERSION ((1u << 16) | 1u)
TARNWICK_MSL_FUNCTION uint32_t tarnwick_msl_version(void);

typedef struct tarnwick_msl_compiler tarnwick_msl_compiler;
typedef struct tarnwick_msl_options tarnwick_msl_options;
typedef struct tarnwick_msl_result tarnwick_msl_result;

typedef enum tarnwick_msl_status {
    TARNWICK_MSL_DONE = 0,
    TARNWICK_MSL_PROGRAM_INVALID = 1, /* the program has errors; the result has its diagnostics */
    TARNWICK_MSL_COMPILER_FAILED = 2, /* the compiler crashed on the program, ran out of time,
                                         memory or stack, or could not be started; a diagnostic
                                         says which */
    TARNWICK_MSL_ARGUMENT_INVALID = 3, /* a function does not take such an argument, or a null
                                          pointer; it has done nothing */
    TARNWICK_MSL_OUT_OF_MEMORY = 4     /* of this process; nothing was made or changed */
} tarnwick_msl_status;

/* --- compilers --- */

typedef struct tarnwick_msl_compiler_settings {
    size_t struct_size;
    const char* worker;         /* the program of the children; null: the one installed with the
                                   library, found from the library's own file */
    uint32_t most_workers;      /* children at a time, at least 1; 0: 4. Each takes about 0.1 GiB of
                                   memory, and up to 3 GiB for a program that needs it */
} tarnwick_msl_compiler_settings;

/* `settings` may be null. Starts no child: the first compilation does, which takes a few hundred
 * milliseconds longer than the next one. */
TARNWICK_MSL_FUNCTION tarnwick_msl_status tarnwick_msl_compiler_create(
    const tarnwick_msl_compiler_settings* settings, tarnwick_msl_compiler** compiler);

/* Ends the children and waits for their end. No compilation may run. Null is allowed, here and in
 * the other functions that end in _destroy. */
TARNWICK_MSL_FUNCTION void tarnwick_msl_compiler_destroy(tarnwick_msl_compiler* compiler);

/* --- options --- */

TARNWICK_MSL_FUNCTION tarnwick_msl_status
tarnwick_msl_options_create(tarnwick_msl_options** options);
TARNWICK_MSL_FUNCTION void tarnwick_msl_options_destroy(tarnwick_msl_options* options);

/* The name of the source in messages. Default: "program_source". */
TARNWICK_MSL_FUNCTION tarnwick_msl_status
tarnwick_msl_options_set_name(tarnwick_msl_options* options, const char* name);

/* A macro of the preprocessor. `name` is an identifier; `value` is one line that does not end with
 * a backslash, null for "1". */
TARNWICK_MSL_FUNCTION tarnwick_msl_status tarnwick_msl_options_add_define(
    tarnwick_msl_options* options, const char* name, const char* value);

/* A folder of files for #include, searched after those that were added before. Files outside these
 * folders are refused, also through ".." and links; without a folder all files are refused. The
 * headers of the language's own library need no folder. A relative path is one of the process at
 * the time of each compilation. */
TARNWICK_MSL_FUNCTION tarnwick_msl_status
tarnwick_msl_options_add_include_folder(tarnwick_msl_options* options, const char* folder);

/* "metal1.0" to "metal3.1", before 3.0 also "macos-metal2.4" and "ios-metal2.4". Sets
 * __METAL_VERSION__ and nothing else. Default: "metal3.1". */
TARNWICK_MSL_FUNCTION tarnwick_msl_status
tarnwick_msl_options_set_language_version(tarnwick_msl_options* options, const char* version);

typedef enum tarnwick_msl_language {
    TARNWICK_MSL_SPIRV = 0, /* SPIR-V 1.6 for Vulkan 1.3 */
    TARNWICK_MSL_WGSL = 1   /* text in the WebGPU Shading Language */
} tarnwick_msl_language;

/* The language of the result. WGSL turns off the features that it lacks, from TARNWICK_MSL_FLOAT16
 * to TARNWICK_MSL_ADDRESSES; call this before tarnwick_msl_options_set_feature.
 * Default: TARNWICK_MSL_SPIRV. Since 1.1. */
TARNWICK_MSL_FUNCTION tarnwick_msl_status
tarnwick_msl_options_set_language(tarnwick_msl_options* options, tarnwick_msl_language language);

/* 0: leaves out the steps that only make code faster. Default: 1. */
TARNWICK_MSL_FUNCTION tarnwick_msl_status
tarnwick_msl_options_set_optimised(tarnwick_msl_options* options, int is_optimised);

/* Fixes a function constant (Metal Shading Language 3.1, 5.8), one number for each component. A bool
 * is the integer 0 or 1. Constants without a value become specialisation constants. */
TARNWICK_MSL_FUNCTION tarnwick_msl_status
tarnwick_msl_options_set_constant_integers(tarnwick_msl_options* options, const char* name,
                                           const int64_t* numbers, size_t count);
TARNWICK_MSL_FUNCTION tarnwick_msl_status
tarnwick_msl_options_set_constant_reals(tarnwick_msl_options* options, const char* name,
                                        const double* numbers, size_t count);

/* Features of the device that the code is for. A program that needs one that is not there is
 * refused, if the comment says nothing else. */
typedef enum tarnwick_msl_feature {
    /* The four types of the device, in registers and in memory (shaderFloat16, shaderInt8 ...,
     * and the storage features of 8 and 16 bits). Otherwise words of 32 bits and floats compute
     * the same values more slowly; only atomic operations and addresses of 64 bits are refused.
     * Buffers must then end at a multiple of 4 bytes. Default: there */
    TARNWICK_MSL_FLOAT16 = 0,
    TARNWICK_MSL_INT8 = 1,
    TARNWICK_MSL_INT16 = 2,
    TARNWICK_MSL_INT64 = 3,
    TARNWICK_MSL_MESHES = 4,   /* VK_EXT_mesh_shader. Default: there */
    TARNWICK_MSL_ADDRESSES = 5, /* pointers that are read from buffers, whose accesses nothing
                                   bounds; for programs that are trusted. Default: not there */
    TARNWICK_MSL_FLOAT_ATOMICS = 6,  /* shaderBufferFloat32AtomicAdd; otherwise a loop of
                                        compare-exchanges. Default: not there */
    TARNWICK_MSL_PIXEL_INTERLOCK = 7, /* fragmentShaderPixelInterlock, for raster order groups;
                                         otherwise they have no effect. Default: not there */
    TARNWICK_MSL_LOGS = 8,            /* NonSemantic.DebugPrintf, for os_log; otherwise logs are
                                         dropped. Default: not there */
    TARNWICK_MSL_UNIFORM_SPECIALISATION = 9 /* the driver compiles anew for values of uniform
                                               buffers, as Mesa's CPU driver does; conditions on them
                                               are then hidden. Default: there */
} tarnwick_msl_feature;
TARNWICK_MSL_FUNCTION tarnwick_msl_status tarnwick_msl_options_set_feature(
    tarnwick_msl_options* options, tarnwick_msl_feature feature, int is_there);

/* The result has only the entry points that were added. A program without one of them is an error.
 * Default: all. */
TARNWICK_MSL_FUNCTION tarnwick_msl_status
tarnwick_msl_options_add_entry_point(tarnwick_msl_options* options, const char* name);

/* The maximum time of a compilation in milliseconds, at least 1. Default: 8000. */
TARNWICK_MSL_FUNCTION tarnwick_msl_status
tarnwick_msl_options_set_time_limit(tarnwick_msl_options* options, uint32_t milliseconds);

/* 1: entry points have a listing. Default: 0. */
TARNWICK_MSL_FUNCTION tarnwick_msl_status
tarnwick_msl_options_set_listed(tarnwick_msl_options* options, int is_listed);

/* --- compiling --- */

/* Blocks until the program is compiled or the time is over, and before that while all children of
 * the compiler work. `options` may be null. `source` has `length` bytes and needs no zero byte.
 *
 * After TARNWICK_MSL_DONE, _PROGRAM_INVALID and _COMPILER_FAILED there is a result, else *result is
 * null. */
TARNWICK_MSL_FUNCTION tarnwick_msl_status tarnwick_msl_compile(
    tarnwick_msl_compiler* compiler, const tarnwick_msl_options* options, const char* source,
    size_t length, tarnwick_msl_result** result);
TARNWICK_MSL_FUNCTION void tarnwick_msl_result_destroy(tarnwick_msl_result* result);

/* The functions below fill a record and return 1, or return 0 if there is no record of that index,
 * so that a loop over all ends at the first 0. They also return 0 for a null pointer. */

/* All messages for people: "file:line:column: severity: message", the line, a caret. */
TARNWICK_MSL_FUNCTION const char* tarnwick_msl_result_messages(const tarnwick_msl_result* result);

typedef enum tarnwick_msl_severity {
    TARNWICK_MSL_ERROR = 0,
    TARNWICK_MSL_WARNING = 1,
    TARNWICK_MSL_NOTE = 2 /* belongs to the error or warning before it */
} tarnwick_msl_severity;
typedef struct tarnwick_msl_diagnostic {
    size_t struct_size;
    tarnwick_msl_severity severity;
    const char* file;
    uint32_t line;   /* from 1; 0: about no place */
    uint32_t column; /* from 1, in bytes */
    uint32_t length; /* bytes */
    const char* message;
} tarnwick_msl_diagnostic;
TARNWICK_MSL_FUNCTION int tarnwick_msl_result_diagnostic(const tarnwick_msl_result* result,
                                                         size_t index,
                                                         tarnwick_msl_diagnostic* diagnostic);

/* The files that were read from the folders of includes; null after the last. */
TARNWICK_MSL_FUNCTION const char* tarnwick_msl_result_file(const tarnwick_msl_result* result,
                                                           size_t index);

/* --- entry points --- */

typedef enum tarnwick_msl_stage {
    TARNWICK_MSL_VERTEX = 0,
    TARNWICK_MSL_FRAGMENT = 1,
    TARNWICK_MSL_KERNEL = 2,
    TARNWICK_MSL_OBJECT = 3,
    TARNWICK_MSL_MESH = 4
} tarnwick_msl_stage;

typedef enum tarnwick_msl_patch {
    TARNWICK_MSL_NO_PATCH = 0,
    TARNWICK_MSL_TRIANGLE_PATCH = 1,
    TARNWICK_MSL_QUAD_PATCH = 2
} tarnwick_msl_patch;

/* Properties of an entry point. */
#define TARNWICK_MSL_USES_LOOP_BUDGET 1u       /* some loop has no bound that is known */
#define TARNWICK_MSL_NEEDS_STANDARD_SAMPLES 2u /* standardSampleLocations */
#define TARNWICK_MSL_WRITES_POINT_SIZE 4u
#define TARNWICK_MSL_STORES_BY_ADDRESS 8u
#define TARNWICK_MSL_SHAPED_BY_CONSTANTS 16u /* an argument, input or output exists only for some
                                                values of function constants: exact only if they
                                                were fixed */
#define TARNWICK_MSL_NEEDS_EIGHT_LANES 32u /* in each subgroup (subgroupSize) */

/* Specialisation constants of the modules, which declare those that they use. */
#define TARNWICK_MSL_LOOP_BUDGET_CONSTANT 0u /* uint: rounds before an invocation ends */
#define TARNWICK_MSL_WIDTH_CONSTANT 1u       /* uint: threads of a threadgroup along x, */
#define TARNWICK_MSL_HEIGHT_CONSTANT 2u      /* y */
#define TARNWICK_MSL_DEPTH_CONSTANT 3u       /* and z */
#define TARNWICK_MSL_VIEWS_CONSTANT 4u       /* uint: views of a render pass */
#define TARNWICK_MSL_SAMPLES_CONSTANT 5u     /* uint: samples of a pixel */
/* uint: bytes of the memory of the argument [[threadgroup(index)]] */
#define TARNWICK_MSL_THREADGROUP_CONSTANT(index) (16u + (index))
/* a component of the function constant with the index, of its type; and a bool: it has a value */
#define TARNWICK_MSL_FUNCTION_CONSTANT(index, component) (256u + 8u * (index) + (component))
#define TARNWICK_MSL_FUNCTION_CONSTANT_PRESENCE(index) (256u + 8u * (index) + 4u)

/* Push constants of a kernel: three uint3 at the bytes 0 (threads of the grid), 16 and 32 (first
 * element and size of stage_in). */
#define TARNWICK_MSL_KERNEL_PUSH_CONSTANT_BYTES 44u

typedef struct tarnwick_msl_entry_point {
    size_t struct_size;
    const char* name; /* as the source has it; in the module the entry point is "main" */
    tarnwick_msl_stage stage;
    const uint32_t* words; /* SPIR-V */
    size_t word_count;
    const uint32_t* capabilities; /* that the module declares (SPIR-V 1.6, 3.31) */
    size_t capability_count;
    uint32_t properties;        /* bits above */
    uint32_t color_attachments; /* that a fragment function writes, bit n for color(n) */
    uint32_t threadgroup_bytes; /* that the function declares */
    uint32_t most_threads;      /* max_total_threads_per_threadgroup; 0: not specified */
    const uint32_t* threadgroup_arguments; /* indices of those whose length the host sets */
    size_t threadgroup_argument_count;
    tarnwick_msl_patch patch;
    uint32_t control_points; /* 0: not specified */
    const char* listing;     /* text of the SPIR-V assembler; null if not asked for */
} tarnwick_msl_entry_point;
TARNWICK_MSL_FUNCTION int tarnwick_msl_result_entry_point(const tarnwick_msl_result* result,
                                                          size_t index,
                                                          tarnwick_msl_entry_point* entry);

/* --- what an entry point binds --- */

typedef enum tarnwick_msl_binding_kind {
    TARNWICK_MSL_UNIFORM_BUFFER = 0,
    TARNWICK_MSL_STORAGE_BUFFER = 1,
    TARNWICK_MSL_SAMPLED_TEXTURE = 2,
    TARNWICK_MSL_STORAGE_TEXTURE = 3,
    TARNWICK_MSL_SAMPLER = 4,
    TARNWICK_MSL_CONSTANT_SAMPLER = 5, /* of the program; the binding has its state */
    TARNWICK_MSL_COLOR_INPUT = 6,      /* the colour so far of the attachment `index` */
    TARNWICK_MSL_ACCELERATION_STRUCTURE = 7,
    TARNWICK_MSL_LOOP_REPORT = 8,     /* a storage buffer of one word, set to 1 by an invocation that
                                         ran out of its loop budget */
    TARNWICK_MSL_BUFFER_ADDRESSES = 9, /* a uniform buffer: 64-bit addresses of the buffers with the
                                          indices from 0 on */
    TARNWICK_MSL_GRID_SIZE = 10,    /* of WGSL, a uniform buffer of 48 bytes: the size of a kernel's
                                       grid in threads as three words; the element of stage_in that
                                       the first thread reads, at byte 16; the maximum size of the
                                       grid that reads stage_in, at byte 32 */
    TARNWICK_MSL_VIEWPORT_SIZE = 11 /* of WGSL, a uniform buffer: the viewport's width and height in
                                       pixels, two floats */
} tarnwick_msl_binding_kind;

typedef enum tarnwick_msl_texture_shape {
    TARNWICK_MSL_NO_TEXTURE = 0,
    TARNWICK_MSL_TEXTURE_BUFFER = 1,
    TARNWICK_MSL_TEXTURE_1D = 2,
    TARNWICK_MSL_TEXTURE_1D_ARRAY = 3,
    TARNWICK_MSL_TEXTURE_2D = 4,
    TARNWICK_MSL_TEXTURE_2D_ARRAY = 5,
    TARNWICK_MSL_TEXTURE_2D_MULTISAMPLE = 6,
    TARNWICK_MSL_TEXTURE_2D_MULTISAMPLE_ARRAY = 7,
    TARNWICK_MSL_TEXTURE_3D = 8,
    TARNWICK_MSL_TEXTURE_CUBE = 9,
    TARNWICK_MSL_TEXTURE_CUBE_ARRAY = 10
} tarnwick_msl_texture_shape;

typedef enum tarnwick_msl_component {
    TARNWICK_MSL_NO_COMPONENT = 0,
    TARNWICK_MSL_FLOAT_COMPONENT = 1,
    TARNWICK_MSL_INT_COMPONENT = 2,
    TARNWICK_MSL_UINT_COMPONENT = 3,
    TARNWICK_MSL_ULONG_COMPONENT = 4
} tarnwick_msl_component;

/* The state of a sampler, in the order of the words of Metal Shading Language 3.1, 2.10. */
typedef struct tarnwick_msl_sampler {
    size_t struct_size;
    uint32_t coord;      /* 0 normalized, 1 pixel, of which the module divides by the size */
    uint32_t address[3]; /* s, t, r: 0 clamp to zero, 1 to edge, 2 repeat, 3 mirrored repeat,
                            4 clamp to border, 5 mirror clamp to edge */
    uint32_t mag_filter, min_filter; /* 0 nearest, 1 linear */
    uint32_t mip_filter;             /* 0 none, 1 nearest, 2 linear */
    uint32_t border_color;           /* 0 transparent black, 1 opaque black, 2 opaque white */
    uint32_t compares;               /* 1: it compares, by: */
    uint32_t compare; /* 0 never, 1 less, 2 less equal, 3 greater, 4 greater equal, 5 equal,
                         6 not equal, 7 always */
    uint32_t max_anisotropy; /* [1, 16] */
    float lod_min, lod_max;  /* 1000: no limit */
} tarnwick_msl_sampler;

/* One binding of descriptor set 0. Bindings count up from 0 in vertex functions and kernels, from 32
 * in fragment functions, from 64 in object functions. A texture may have several. */
typedef struct tarnwick_msl_binding {
    size_t struct_size;
    tarnwick_msl_binding_kind kind;
    uint32_t set;
    uint32_t binding;
    uint32_t index;   /* of buffer(n), texture(n), sampler(n) or color(n) */
    const char* name; /* of the argument, for one of an array that of the array; "" without one */
    uint32_t bytes;   /* of a buffer that the function may read at least; 0: not fixed */
    uint32_t is_written;
    tarnwick_msl_texture_shape shape;
    tarnwick_msl_component component;
    uint32_t is_depth;
    uint32_t level;     /* of a storage texture: the one level that is bound */
    uint32_t is_atomic; /* of a storage texture */
    uint32_t compares;  /* of a sampler: it must compare */
} tarnwick_msl_binding;
TARNWICK_MSL_FUNCTION int tarnwick_msl_result_binding(const tarnwick_msl_result* result,
                                                      size_t entry, size_t index,
                                                      tarnwick_msl_binding* binding);
/* The text of an entry point in WGSL, whose bindings are in group 0. Null if there is no such entry
 * point or it is in another language. Since 1.1. */
TARNWICK_MSL_FUNCTION const char* tarnwick_msl_result_wgsl(const tarnwick_msl_result* result,
                                                           size_t entry);
/* The number of an override constant that the text declares: that of the specialisation constant
 * with the same meaning. A pipeline may set these and no others. Since 1.1. */
TARNWICK_MSL_FUNCTION int tarnwick_msl_result_override(const tarnwick_msl_result* result,
                                                       size_t entry, size_t index,
                                                       uint32_t* number);
/* The texel format of a binding of the kind TARNWICK_MSL_STORAGE_TEXTURE in WGSL: "rgba32float".
 * Null for other bindings. Since 1.1. */
TARNWICK_MSL_FUNCTION const char* tarnwick_msl_result_format(const tarnwick_msl_result* result,
                                                             size_t entry, size_t binding);
/* A feature of WebGPU that the text requires: "subgroups". Null after the last one. Since 1.1. */
TARNWICK_MSL_FUNCTION const char* tarnwick_msl_result_feature(const tarnwick_msl_result* result,
                                                              size_t entry, size_t index);
/* The state of a binding of the kind TARNWICK_MSL_CONSTANT_SAMPLER. */
TARNWICK_MSL_FUNCTION int tarnwick_msl_result_sampler(const tarnwick_msl_result* result,
                                                      size_t entry, size_t binding,
                                                      tarnwick_msl_sampler* sampler);

typedef enum tarnwick_msl_table {
    TARNWICK_MSL_BUFFER_TABLE = 0,
    TARNWICK_MSL_TEXTURE_TABLE = 1,
    TARNWICK_MSL_SAMPLER_TABLE = 2,
    TARNWICK_MSL_THREADGROUP_TABLE = 3,
    TARNWICK_MSL_ACCELERATION_STRUCTURE_TABLE = 4
} tarnwick_msl_table;

typedef enum tarnwick_msl_access {
    TARNWICK_MSL_NO_ACCESS = 0,
    TARNWICK_MSL_READ = 1,
    TARNWICK_MSL_WRITE = 2,
    TARNWICK_MSL_READ_WRITE = 3,
    TARNWICK_MSL_SAMPLE = 4
} tarnwick_msl_access;

#define TARNWICK_MSL_NO_RECORD UINT32_MAX

/* An argument that the host binds, as the function declares it, used or not. */
typedef struct tarnwick_msl_argument {
    size_t struct_size;
    const char* name;
    tarnwick_msl_table table;
    uint32_t index;
    uint32_t count;   /* array<T, count> has the indices from `index` on; else 1 */
    const char* type; /* "Light", "texture2d<float>"; of a pointer, its pointee */
    uint32_t bytes;   /* sizeof the pointee; 0: not known */
    uint32_t alignment;
    uint32_t record; /* of the pointee, or TARNWICK_MSL_NO_RECORD */
    tarnwick_msl_access access;
    uint32_t is_constant;  /* a buffer in the address space `constant` */
    uint32_t is_reference; /* a buffer of exactly one element */
} tarnwick_msl_argument;
TARNWICK_MSL_FUNCTION int tarnwick_msl_result_argument(const tarnwick_msl_result* result,
                                                       size_t entry, size_t index,
                                                       tarnwick_msl_argument* argument);

typedef enum tarnwick_msl_member_kind {
    TARNWICK_MSL_MEMBER_CONSTANTS = 0,
    TARNWICK_MSL_MEMBER_BUFFER = 1,
    TARNWICK_MSL_MEMBER_TEXTURE = 2,
    TARNWICK_MSL_MEMBER_SAMPLER = 3
} tarnwick_msl_member_kind;

/* A member of an argument buffer (Metal Shading Language 3.1, 2.13). Its texture, sampler or buffer
 * is a binding of its own, with the index `index`. */
typedef struct tarnwick_msl_argument_member {
    size_t struct_size;
    tarnwick_msl_member_kind kind;
    uint32_t buffer; /* index of the argument buffer */
    uint32_t id;     /* n of [[id(n)]] */
    uint32_t offset; /* bytes from the start of the buffer's first record */
    uint32_t bytes;
    uint32_t index;
    uint32_t stride; /* bytes from one record of the buffer to the next */
} tarnwick_msl_argument_member;
TARNWICK_MSL_FUNCTION int tarnwick_msl_result_argument_member(const tarnwick_msl_result* result,
                                                              size_t entry, size_t index,
                                                              tarnwick_msl_argument_member* member);

/* Types of numbers. */
typedef enum tarnwick_msl_scalar {
    TARNWICK_MSL_BOOL = 0,
    TARNWICK_MSL_CHAR = 1,
    TARNWICK_MSL_UCHAR = 2,
    TARNWICK_MSL_SHORT = 3,
    TARNWICK_MSL_USHORT = 4,
    TARNWICK_MSL_INT = 5,
    TARNWICK_MSL_UINT = 6,
    TARNWICK_MSL_HALF = 7,
    TARNWICK_MSL_FLOAT = 8,
    TARNWICK_MSL_LONG = 9,
    TARNWICK_MSL_ULONG = 10
} tarnwick_msl_scalar;

/* An [[attribute(index)]]. In a vertex function it is the input at location `index`, a vec4, ivec4
 * or uvec4. Kernels and post-tessellation vertex functions read it by the function `fetch` of the
 * module, whose body returns zero and which the host replaces; 0 without one. */
typedef struct tarnwick_msl_attribute {
    size_t struct_size;
    const char* name;
    uint32_t index;
    tarnwick_msl_scalar scalar;
    uint32_t width; /* components, [1, 4] */
    uint32_t is_of_control_point;
    uint32_t fetch; /* id */
} tarnwick_msl_attribute;
TARNWICK_MSL_FUNCTION int tarnwick_msl_result_attribute(const tarnwick_msl_result* result,
                                                        size_t entry, size_t index,
                                                        tarnwick_msl_attribute* attribute);

/* A function constant that the module reads and that has no value yet. */
typedef struct tarnwick_msl_constant {
    size_t struct_size;
    const char* name;
    uint32_t index;
    tarnwick_msl_scalar scalar;
    uint32_t width;       /* components, [1, 4] */
    uint32_t is_required; /* the module does not ask whether there is a value */
} tarnwick_msl_constant;
TARNWICK_MSL_FUNCTION int tarnwick_msl_result_constant(const tarnwick_msl_result* result,
                                                       size_t entry, size_t index,
                                                       tarnwick_msl_constant* constant);

/* --- layouts --- */

typedef struct tarnwick_msl_record {
    size_t struct_size;
    const char* name;
    uint32_t bytes;
    uint32_t alignment;
} tarnwick_msl_record;
TARNWICK_MSL_FUNCTION int tarnwick_msl_result_record(const tarnwick_msl_result* result,
                                                     size_t index, tarnwick_msl_record* record);

typedef struct tarnwick_msl_record_member {
    size_t struct_size;
    const char* name;
    const char* type; /* of an element, if it is an array or a pointer */
    uint32_t offset;  /* bytes from the start of the record */
    uint32_t bytes;   /* of an element */
    uint32_t count;   /* elements of an array; 0: not an array */
    uint32_t stride;  /* bytes from one element to the next; 0: not an array */
    uint32_t columns; /* of a matrix, each of bytes / columns bytes; 0: not a matrix */
    uint32_t record;  /* or TARNWICK_MSL_NO_RECORD */
    uint32_t is_pointer; /* 8 bytes, an address */
} tarnwick_msl_record_member;
TARNWICK_MSL_FUNCTION int tarnwick_msl_result_record_member(const tarnwick_msl_result* result,
                                                            size_t record, size_t index,
                                                            tarnwick_msl_record_member* member);

#ifdef __cplusplus
}
#endif

#endif
