// The records of an argument buffer, and the resources of their members.
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"

#include <string>

namespace tarnwick::msl {

// The global of the buffer with the index.
std::string argumentGlobal(std::uint32_t index);

class ArgumentRecords {
  public:
    ArgumentRecords(ShaderModule& shader, std::uint32_t buffer);

    std::uint64_t stride() const { return stride_; } // bytes from one record to the next

    // The member at the offset from the start of the buffer; null if no member is there, or if the
    // members of its record have no resources yet.
    const ArgumentMember* memberAt(std::int64_t offset) const;
    // The member of the first record that has the same place in its record.
    const ArgumentMember* memberOfAnyRecord(std::int64_t offset) const;

    // Gives the members of the record at the offset resources, if they have none. Invalidates the
    // results of memberAt.
    void holdRecordAt(std::int64_t offset);

  private:
    std::int64_t recordAt(std::int64_t offset) const;
    void hold(const ArgumentMember& ofFirst, std::uint32_t offset);
    std::uint32_t newTexture(std::uint32_t like);
    std::uint32_t newSampler();
    std::uint32_t newBuffer(std::uint32_t like);

    ShaderModule& shader_;
    std::uint32_t buffer_;
    std::uint64_t stride_ = 1;
};

} // namespace tarnwick::msl
