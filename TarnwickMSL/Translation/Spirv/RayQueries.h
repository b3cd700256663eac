// Ray queries and acceleration structures: their variables, and the calls on them.
#pragma once

#include "TarnwickMSL/EntryPoint.h"
#include "TarnwickMSL/Translation/Spirv/Body.h"

#include <functional>
#include <optional>
#include <vector>

namespace tarnwick::msl::spirv {

class RayQueries {
  public:
    // `takeBinding` gives the next free binding.
    RayQueries(Body& body, std::function<std::uint32_t()> takeBinding)
        : body_(body), takeBinding_(std::move(takeBinding)) {}

    static bool takes(llvm::StringRef name) { return name.starts_with("ray_query_"); }
    // Gives the call's value; 0 if it has none.
    Id write(llvm::StringRef name, const llvm::CallInst& call);

    const std::vector<Resource>& resources() const { return resources_; }

  private:
    // A type without operands.
    Id typeOf(spv::Op op, Id& known);
    // The variable of the query that the call is about.
    Id query(const llvm::CallInst& call);
    Id structure(const llvm::Value* handle);
    void reset(const llvm::CallInst& call);
    std::optional<Id> intersection(const llvm::CallInst& call);
    Id column(spv::Op op, const llvm::CallInst& call);

    Body& body_;
    std::function<std::uint32_t()> takeBinding_;
    Id queryType_ = 0, structureType_ = 0;
    llvm::DenseMap<const llvm::Value*, Id> queries_; // by the call that made each
    llvm::DenseMap<std::uint64_t, Id> structures_;   // variables, by index
    std::vector<Resource> resources_;
};

} // namespace tarnwick::msl::spirv
