#include "TarnwickGPU/ArgumentEncoder.h"

#include "TarnwickBase/Precondition.h"
#include "TarnwickGPU/Pipeline.h"
#include "TarnwickGPU/Resources.h"
#include "TarnwickGPU/Resources/Samplers.h"
#include "TarnwickGPU/SamplerState.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <utility>

namespace tarnwick::gpu {

std::unique_ptr<ArgumentEncoder> Function::newArgumentEncoder(std::uint32_t index) const {
    std::vector<msl::ArgumentMember> members;
    std::ranges::copy_if(entryPoint_->members, std::back_inserter(members),
                         [&](const msl::ArgumentMember& each) {
                             return each.buffer == index && each.offset < each.stride;
                         });
    return members.empty() ? nullptr : std::make_unique<ArgumentEncoder>(std::move(members));
}

std::size_t ArgumentEncoder::encodedLength() const {
    return members_.front().stride;
}

void ArgumentEncoder::setArgumentBuffer(const Buffer& buffer, std::size_t offset) {
    precondition(buffer.contents(), "an argument buffer is in the CPU's memory");
    precondition(offset <= buffer.length() && encodedLength() <= buffer.length() - offset,
                 "an argument buffer has room for its record", "offset", offset, "bytes",
                 buffer.length());
    record_ = static_cast<std::byte*>(buffer.contents()) + offset;
}

const msl::ArgumentMember* ArgumentEncoder::member(msl::MemberKind kind,
                                                   std::uint32_t index) const {
    const auto found = std::ranges::find_if(members_, [&](const msl::ArgumentMember& each) {
        return each.kind == kind && each.id == index;
    });
    return found == members_.end() ? nullptr : &*found;
}

void ArgumentEncoder::write(msl::MemberKind kind, std::uint32_t index, std::uint64_t number) {
    precondition(record_, "setArgumentBuffer() comes before the members");
    if (const msl::ArgumentMember* found = member(kind, index))
        std::memcpy(record_ + found->offset, &number, found->bytes);
}

void ArgumentEncoder::setBuffer(const Buffer& buffer, std::size_t offset, std::uint32_t index) {
    precondition(offset < buffer.length(), "the offset is within the buffer", "offset", offset,
                 "bytes", buffer.length());
    write(msl::MemberKind::buffer, index, buffer.gpuAddress() + offset);
}

void ArgumentEncoder::setTexture(const Texture& texture, std::uint32_t index) {
    write(msl::MemberKind::texture, index, texture.gpuResourceID());
}

void ArgumentEncoder::setSamplerState(const SamplerState& state, std::uint32_t index) {
    write(msl::MemberKind::sampler, index, state.parts().number);
}

void* ArgumentEncoder::constantData(std::uint32_t index) {
    precondition(record_, "setArgumentBuffer() comes before the members");
    const msl::ArgumentMember* found = member(msl::MemberKind::constants, index);
    return found ? record_ + found->offset : nullptr;
}

} // namespace tarnwick::gpu
