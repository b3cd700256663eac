#include "TarnwickGPU/Pipeline.h"

#include <utility>

namespace tarnwick::gpu {

Function::Function(std::shared_ptr<const msl::EntryPoint> entryPoint)
    : entryPoint_(std::move(entryPoint)) {}

const std::string& Function::name() const {
    return entryPoint_->name;
}
msl::Stage Function::stage() const {
    return entryPoint_->stage;
}

Library::Library(std::vector<msl::EntryPoint> entryPoints, std::string warnings)
    : warnings_(std::move(warnings)) {
    for (msl::EntryPoint& entryPoint : entryPoints)
        entryPoints_.push_back(std::make_shared<const msl::EntryPoint>(std::move(entryPoint)));
}

std::unique_ptr<Function> Library::newFunction(std::string_view name) const {
    for (const auto& entryPoint : entryPoints_)
        if (entryPoint->name == name)
            return std::make_unique<Function>(entryPoint);
    return nullptr;
}

std::vector<std::string> Library::functionNames() const {
    std::vector<std::string> names;
    for (const auto& entryPoint : entryPoints_)
        names.push_back(entryPoint->name);
    return names;
}

} // namespace tarnwick::gpu
