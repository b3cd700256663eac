// All memory that loads and stores reach: local arrays, tables, buffers, threadgroup memory, and
// the stage's inputs and outputs, which Stage.h declares. Roots.cpp makes the variables;
// Addresses.cpp has the accesses by address, PackedWords.cpp those of parts of words.
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"
#include "TarnwickMSL/Translation/Spirv/Body.h"
#include "TarnwickMSL/Translation/Reading/Uses.h"

#include <llvm/ADT/MapVector.h>

namespace tarnwick::msl::spirv {

class Memory {
  public:
    Memory(Body& body, const ShaderModule& shader);

    // The alignment is needed for accesses by address.
    Id load(const llvm::Value* pointer, llvm::Type* type, llvm::Align align = {});
    void store(const llvm::Value* pointer, llvm::Type* type, Id value, llvm::Align align = {});

    struct Pointer {
        Id id = 0;
        spv::StorageClass storage = spv::StorageClass::Function;
    };
    // A pointer to one value, for atomics; its id is 0 if it is past the end of the memory.
    Pointer atomic(const llvm::Value* pointer, llvm::Type* type, bool isStore);

    // The variable of an input, for interpolations; `type` is its value's.
    Id input(const llvm::Value* pointer, llvm::Type* type);

    // The variable of a global as it was declared. Throws CompilerFault if the code needs it as
    // another type.
    Id variable(const llvm::GlobalVariable& global);

    Id gridSize(); // of kernels: the push constant; of other functions, of whole threadgroups

    // Call after the code is written: decorates the buffers by their uses.
    void finish();
    // The buffers that the code uses.
    const std::vector<Resource>& resources() const { return resources_; }
    std::uint32_t colorAttachments() const { return colors_; }
    bool writesPointSize() const { return writesPointSize_; }
    bool storesByAddress() const { return storesByAddress_; }
    std::uint32_t threadgroupBytes() const { return threadgroupBytes_; }
    const std::vector<std::uint32_t>& threadgroupPointers() const { return threadgroupPointers_; }

  private:
    struct Variable { // one SPIR-V variable: one view of a root
        View view;
        Id id = 0;
        bool isBlock = false;
        Id length = 0; // of an array whose length is a specialisation constant
    };
    struct Root {
        spv::StorageClass storage = spv::StorageClass::Function;
        const InterfaceVariable* interface = nullptr; // buffers'
        std::size_t resource = 0;
        bool isComputed = false;                  // a built-in that Vulkan has in another form
        llvm::SmallVector<Variable, 1> variables; // a buffer may have several, others one
    };
    struct Found {
        Root* root = nullptr;
        Variable* variable = nullptr;
        Access access;
    };

    Root& root(const llvm::Value* value);
    const InterfaceVariable* interfaceOf(const llvm::GlobalVariable& global) const;
    void makeLocal(Root& made, const llvm::Value& value, llvm::Type* type);
    void makeTable(Root& made, const llvm::GlobalVariable& global);
    void makeWorkgroup(Root& made, const llvm::GlobalVariable& global);
    void makePayload(Root& made, const llvm::GlobalVariable& global);
    void makeStage(Root& made, const llvm::GlobalVariable& global);
    void makeBuffer(Root& made, const llvm::GlobalVariable& global);
    Variable& addBlock(Root& root, View view);
    Id blockContent(const Root& root, const View& view);
    void requireStorage(spv::StorageClass storage, llvm::Type* type);
    Id computed(const Root& root, const llvm::Value* pointer, llvm::Type* type);
    Found find(const llvm::Value* pointer, const Use& use);

    Variable workgroupArray(Root& made, const View& view);
    Id sum(const Step& step);
    Id lastIndex(const Variable& variable);
    Id index(const Step& step, bool isLocal);
    Id firstIndex(const Step& step, const Variable& variable);
    Id chain(const Found& found, const Access& access, bool stopsAtLane);
    Id read(const Found& found, const Access& access);
    Id readNarrow(const Found& found, const Access& access);
    void write(const Found& found, const Access& access, Id value);
    void writeNarrow(const Found& found, const Access& access, Id value);
    void writeParts(const Found& found, const Access& access, Id value);
    Id converted(llvm::Type* to, llvm::Type* from, Id value);

    // In words that values share, in PackedWords.cpp.
    struct Part {
        Id word = 0;   // a pointer
        Id shift = 0;  // in bits
        unsigned bits; // of the value
    };
    Part part(const Found& found, const Access& access);
    Id readPart(const Found& found, const Access& access);
    void writePart(const Found& found, const Access& access, Id value);

    // By address, in Addresses.cpp.
    struct Spot {
        Id address = 0; // 64 bits
        llvm::Align align;
    };
    Spot spot(const Place& place, llvm::Align align);
    Spot movedBy(const Spot& spot, std::uint64_t bytes);
    Id pointer(const Spot& spot, llvm::Type* type);
    Id read(const Spot& spot, llvm::Type* type);
    void write(const Spot& spot, llvm::Type* type, Id value);

    Body& body_;
    const ShaderModule& shader_;
    llvm::MapVector<const llvm::Value*, std::unique_ptr<Root>> roots_;
    std::vector<Resource> resources_;
    std::uint32_t colors_ = 0;
    bool writesPointSize_ = false;
    bool usesAddresses_ = false, storesByAddress_ = false;
    std::uint64_t localBytes_ = 0;
    std::uint32_t threadgroupBytes_ = 0;
    std::vector<std::uint32_t> threadgroupPointers_;
};

} // namespace tarnwick::msl::spirv
