#include "TarnwickGPU/Device.h"
#include "TarnwickGPU/Pipeline.h"
#include "TarnwickMSL/Compile.h"

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

std::unique_ptr<Library> newLibrary(std::string_view source, const msl::CompileOptions& options) {
    msl::Compilation compilation = msl::compile(source, options);
    if (compilation.failed)
        throw LibraryError(compilation.messages, compilation.isCompilersFault);
    return std::make_unique<Library>(std::move(compilation.entryPoints),
                                     std::move(compilation.messages));
}

} // namespace tarnwick::gpu
