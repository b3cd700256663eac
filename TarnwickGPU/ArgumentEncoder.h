// Writes the members of an argument buffer (Metal Shading Language 3.1, 2.13). Implemented in
// Device/ArgumentEncoder.cpp.
#pragma once

#include "TarnwickMSL/EntryPoint.h"

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace tarnwick::gpu {

class Buffer;
class SamplerState;
class Texture;

// Made by Function::newArgumentEncoder. Indices are those of [[id(n)]]; an element of an array has
// the index of the array plus its own. Indices that the record does not have, or has for another
// kind of member, are ignored.
//
// A draw or dispatch reads the textures and samplers, and the buffers of pointers with a place in
// the record that is known to the compiler, when it is encoded. So the argument buffer must be
// in the CPU's memory (StorageMode::shared or setBytes), and what it names must live until the
// command buffer is committed. All resources are resident: there is no useResource.
class ArgumentEncoder {
  public:
    explicit ArgumentEncoder(std::vector<msl::ArgumentMember> members)
        : members_(std::move(members)) {}

    // Bytes of one record, which are those from one record of an array to the next.
    std::size_t encodedLength() const;

    // The record is written at the offset from now on. The buffer must outlive the encoder, have
    // StorageMode::shared and room for encodedLength().
    void setArgumentBuffer(const Buffer& buffer, std::size_t offset);

    // The offset is a multiple of the device's alignments, as for setBuffer of other encoders.
    void setBuffer(const Buffer& buffer, std::size_t offset, std::uint32_t index);
    void setTexture(const Texture& texture, std::uint32_t index);
    void setSamplerState(const SamplerState& state, std::uint32_t index);
    // The address of the constant with the index; null for an unknown index.
    void* constantData(std::uint32_t index);

  private:
    const msl::ArgumentMember* member(msl::MemberKind kind, std::uint32_t index) const;
    void write(msl::MemberKind kind, std::uint32_t index, std::uint64_t number);

    std::vector<msl::ArgumentMember> members_; // of one record; not empty
    std::byte* record_ = nullptr;
};

} // namespace tarnwick::gpu
