// Textures and samplers: their variables, and the calls on them (docs/compiler.md).
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"
#include "TarnwickMSL/Translation/Spirv/Body.h"

namespace tarnwick::msl::spirv {

class Images {
  public:
    // Samplers take the bindings from `nextBinding` on.
    Images(Body& body, const ShaderModule& shader, std::uint32_t nextBinding)
        : body_(body), shader_(shader), nextBinding_(nextBinding) {}

    // Whether NAME is one of a call on a texture.
    static bool takes(llvm::StringRef name);
    // The call's value; 0 where it has none.
    Id write(llvm::StringRef name, const llvm::CallInst& call);

    const std::vector<Resource>& resources() const { return resources_; }

  private:
    struct Image {
        const TextureVariable* texture = nullptr;
        Id type = 0, variable = 0, sampledType = 0;
        bool isStorage = false;
    };
    struct Extras { // image operands (SPIR-V 1.6, 3.14) in the making
        std::uint32_t mask = 0;
        llvm::SmallVector<std::uint32_t, 4> ids;
    };

    Image& image(const llvm::Value* handle);
    void declare(Image& made);
    Id imageType(const TextureVariable& texture, bool isStorage);
    Id sampler(std::uint64_t bits);
    Id load(const Image& image) {
        return body_.emit(spv::Op::OpLoad, image.type, {image.variable});
    }

    Id sample(llvm::StringRef name, const llvm::CallInst& call);
    Id gather(llvm::StringRef name, const llvm::CallInst& call);
    struct Spot;
    Spot spot(const Image& from, const llvm::CallInst& call);
    Id read(const llvm::CallInst& call);
    Id store(const llvm::CallInst& call);
    Id query(llvm::StringRef name, const llvm::CallInst& call);

    Id combined(Image& image, const llvm::CallInst& call);
    Id coordinates(const Image& image, const llvm::CallInst& call, const llvm::Value* offset);
    Id perPixel(const Image& image, llvm::Type* type, Id coordinates);
    Id size(const Image& image, Id level);
    Id halved(llvm::Type* type, Id size, Id level, bool hasLayers);
    Id signedOffset(const llvm::Constant& offset);
    void addOffset(Extras& extras, const llvm::Value* offset);
    Id result(const Image& image, const llvm::CallInst& call, Id value);
    Id resultType(const Image& image, const llvm::CallInst& call);

    Body& body_;
    const ShaderModule& shader_;
    std::uint32_t nextBinding_;
    Id samplerType_ = 0;
    llvm::DenseMap<std::uint32_t, Image> images_;
    llvm::DenseMap<std::uint64_t, Id> samplers_;
    std::vector<Resource> resources_;
};

} // namespace tarnwick::msl::spirv
