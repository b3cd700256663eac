// All memory that loads and stores reach: local variables, tables, buffers, threadgroup memory, and
// the stage's inputs and outputs. MemoryRoots.cpp makes the variables.
//
// A buffer is an array of the one type that all its uses share, or of words. A record of the
// program is not declared for it: Metal's layouts differ from those of WGSL. The variables of the
// program itself have their own types, because only their code sees how they are laid out.
#pragma once

#include "TarnwickMSL/Translation/Reading/Views.h"
#include "TarnwickMSL/Translation/Wgsl/Body.h"

#include <llvm/ADT/MapVector.h>

namespace tarnwick::msl::wgsl {

class Memory {
  public:
    // `takeBinding` gives the binding of a resource that is no argument.
    Memory(Body& body, std::function<std::uint32_t()> takeBinding)
        : body_(body), shader_(body.shader), takeBinding_(std::move(takeBinding)) {}

    // At the start of main.
    void declareOutputs();
    void declareLocals();

    Expression load(const llvm::Value* pointer, llvm::Type* type);
    void store(const llvm::Value* pointer, const llvm::Value* value);

    struct Atomic {
        std::string text; // the variable or its element; "" past the end of the memory
        Sign sign = Sign::no;
    };
    Atomic atomic(const llvm::Value* pointer);

    Expression gridSize(); // of kernels: uint3, in threads

    const std::vector<Resource>& resources() const { return resources_; }
    std::uint32_t colorAttachments() const { return colors_; }
    bool writesPointSize() const;
    std::uint32_t threadgroupBytes() const { return threadgroupBytes_; }
    const std::vector<std::uint32_t>& threadgroupPointers() const { return threadgroupPointers_; }

  private:
    enum class Kind : std::uint8_t {
        variable, // local, threadgroup memory, table, output
        constant, // the same, and never changes while the function runs
        buffer,   // indices out of it have no effect
        computed, // a built-in value that WGSL has in another form
        ignored   // an output or a report that WGSL has nothing for
    };
    struct Root {
        Kind kind = Kind::variable;
        std::string name;
        View view;
        bool isAtomic = false;
        bool isShared = false; // with other threads
        bool isReport = false; // the loop report
        Sign sign = Sign::no;  // of atomic integers, and of inputs and outputs
        std::string length;    // elements of an array that the pipeline sets
        const InterfaceVariable* interface = nullptr;
        std::size_t resource = 0;
    };

    Root& root(const llvm::Value* value);
    const InterfaceVariable* interfaceOf(const llvm::GlobalVariable& global) const;
    void makeTable(Root& made, const llvm::GlobalVariable& global);
    void makeWorkgroup(Root& made, const llvm::GlobalVariable& global);
    void makeStage(Root& made, const llvm::GlobalVariable& global);
    void makeBuffer(Root& made, const llvm::GlobalVariable& global);
    bool makeUniform(Root& made, const llvm::GlobalVariable& global, const std::vector<Use>& uses);
    void noteAtomics(Root& made, const std::vector<Use>& uses, const llvm::Value& value);
    std::string contentType(const Root& root);

    Access find(const Root& root, const Place& place, llvm::Type* type);
    Expression index(const Step& step);
    std::string clamped(const Root& root, const Step& step, bool isFirst);
    std::string chain(const Root& root, llvm::ArrayRef<Step> steps);
    void change(const Root& root, const std::string& text);
    Expression read(const Root& root, const Access& access);
    void write(const Root& root, const Access& access, const Expression& value);
    Expression converted(llvm::Type* to, llvm::Type* from, const Expression& value);
    Expression computed(const Root& root, const Place& place, llvm::Type* type);

    Body& body_;
    const ShaderModule& shader_;
    std::function<std::uint32_t()> takeBinding_;
    llvm::MapVector<const llvm::Value*, std::unique_ptr<Root>> roots_;
    std::vector<Resource> resources_;
    std::uint32_t colors_ = 0;
    std::string pointSize_;
    std::uint64_t localBytes_ = 0;
    std::uint32_t threadgroupBytes_ = 0;
    std::vector<std::uint32_t> threadgroupPointers_;
};

} // namespace tarnwick::msl::wgsl
