// What a host must know of a program's arguments: their names, types and the layout of records in
// buffers. EntryPoint.h says where they are bound.
#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace tarnwick::msl {

inline constexpr std::uint32_t noRecord = std::numeric_limits<std::uint32_t>::max();

// A type as the source spells it, without address spaces: "float3", "packed_float3", "float4x4",
// "Light", "texture2d<float>". The type of a pointer, reference or array is that of its element.
struct ReflectedType {
    std::string name;
    std::uint32_t bytes = 0;         // sizeof one element; 0: not known to a host
    std::uint32_t alignment = 0;     // of one element
    std::uint32_t record = noRecord; // index of its layout in Reflection::records
    std::uint32_t columns = 0;       // of a matrix, else 0; each has bytes / columns bytes

    bool operator==(const ReflectedType&) const = default;
};

struct RecordMember {
    std::string name; // members of a base come first, with their own names
    ReflectedType type;
    std::uint32_t offset = 0; // bytes from the start of the record
    std::uint32_t count = 0;  // elements of an array, of all its dimensions; 0: not an array
    std::uint32_t stride = 0; // bytes from one element to the next; 0: not an array
    bool isPointer = false;   // 64 bits, the address of elements of the type

    bool operator==(const RecordMember&) const = default;
};

struct Record {
    std::string name; // with namespaces
    std::uint32_t bytes = 0;
    std::uint32_t alignment = 0;
    std::vector<RecordMember> members; // by offset, ascending; of a union, all at 0

    bool operator==(const Record&) const = default;
};

// The table of a host's encoder that an argument is in.
enum class ArgumentTable : std::uint8_t {
    buffer,
    texture,
    sampler,
    threadgroup, // memory whose length the host sets
    accelerationStructure
};

enum class Access : std::uint8_t { none, read, write, readWrite, sample };

// One argument of an entry point that the host binds, whether the function uses it or not.
struct ReflectedArgument {
    std::string name;
    ArgumentTable table = ArgumentTable::buffer;
    std::uint32_t index = 0; // of buffer(n), texture(n), sampler(n), threadgroup(n)
    std::uint32_t count = 1; // array<T, count> has the indices from `index` on
    ReflectedType type;      // of buffers and threadgroup memory: the pointee
    Access access = Access::none;
    bool isConstant = false;  // a buffer in the address space `constant`
    bool isReference = false; // a buffer of exactly one element; else as many as are bound

    bool operator==(const ReflectedArgument&) const = default;
};

struct ReflectedEntry {
    std::string name;
    std::vector<ReflectedArgument> arguments; // in source order

    bool operator==(const ReflectedEntry&) const = default;
};

struct Reflection {
    std::vector<ReflectedEntry> entries; // in source order
    std::vector<Record> records;         // of all arguments, also behind pointers; each once

    bool operator==(const Reflection&) const = default;
};

} // namespace tarnwick::msl
