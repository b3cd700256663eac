// The addresses of the host's buffers, for pointers that are kept in buffers.
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"

#include <llvm/ADT/DenseMap.h>

namespace tarnwick::msl {

// Adds the table of addresses (InterfaceKind::bufferAddresses) to the module when an address is
// first asked for.
class BufferAddresses {
  public:
    explicit BufferAddresses(ShaderModule& shader) : shader_(shader) {}

    // Whether the root is one of the host's buffers.
    bool has(const llvm::Value* root) const;
    // The address of the buffer, 64 bits, loaded once at the start of main.
    llvm::Value* of(llvm::Value* root);

  private:
    std::uint64_t size() const;
    llvm::GlobalVariable* table();

    ShaderModule& shader_;
    llvm::DenseMap<llvm::Value*, llvm::Value*> known_;
};

} // namespace tarnwick::msl
