// Checks a vertex descriptor against the attributes that a function reads. The program's text
// chooses the attributes and their types, so they may not fit the descriptor.
#pragma once

#include "TarnwickGPU/VertexDescriptor.h"
#include "TarnwickMSL/EntryPoint.h"

#include <optional>
#include <string>

namespace tarnwick::gpu {

struct DeviceRecord;

// Why the function cannot read its attributes by the descriptor, as a clause; nothing if it can. A
// null descriptor has no attributes.
std::optional<std::string> attributeFault(const DeviceRecord& device,
                                          const msl::EntryPoint& function,
                                          const VertexDescriptor* descriptor);

} // namespace tarnwick::gpu
