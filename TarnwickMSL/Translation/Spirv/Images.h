// Textures and samplers: their variables, and the calls on them (docs/compiler.md). Sampling.cpp
// has sampling and gathering, Texels.cpp single texels and sizes, ColorInputs.cpp the colours so
// far.
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"
#include "TarnwickMSL/Translation/Spirv/Body.h"
#include "TarnwickMSL/Translation/Spirv/ImageShapes.h"

#include <llvm/ADT/DenseSet.h>

#include <array>
#include <map>

namespace tarnwick::msl::spirv {

class Images {
  public:
    // Samplers take the bindings from `nextBinding` on.
    Images(Body& body, const ShaderModule& shader, std::uint32_t nextBinding);

    // Whether NAME is a call on a texture.
    static bool takes(llvm::StringRef name);
    // Gives the call's value; 0 if it has none.
    Id write(llvm::StringRef name, const llvm::CallInst& call);

    std::uint32_t takeBinding() { return nextBinding_++; } // for a resource of another kind

    const std::vector<Resource>& resources() const { return resources_; }

  private:
    // A view of a texture. Most textures have one. Single texels of a cube are read from a view as
    // a 2D array, and each level that is stored to has a view of its own.
    struct Image {
        const TextureVariable* texture = nullptr;
        const ImageShape* shape = nullptr; // the view's
        std::uint32_t level = 0;           // of a written view
        Id type = 0, variable = 0;
        bool isStorage = false, isAtomic = false;
    };
    // Levels can be counted in a sampled view alone.
    enum class Need : std::uint8_t { wholes, texels, levels };
    struct Extras { // image operands (SPIR-V 1.6, 3.14)
        std::uint32_t mask = 0;
        llvm::SmallVector<std::uint32_t, 4> ids;
    };

    Image& image(const llvm::Value* handle, Need need = Need::wholes, std::uint32_t level = 0);
    Image& texels(const llvm::CallInst& call, unsigned levelOperand);
    const TextureVariable& texture(const llvm::Value* handle) const;
    void declare(Image& made);
    Id imageType(const Image& made);
    Id componentType(TextureComponent component);
    Id sampler(std::uint64_t bits);
    Id samplerType() { return body_.module.type(spv::Op::OpTypeSampler, {}); }
    void declareSampler(Id variable, std::uint64_t bits);
    Id load(const Image& image) {
        return body_.emit(spv::Op::OpLoad, image.type, {image.variable});
    }

    Id sample(llvm::StringRef name, const llvm::CallInst& call);
    Id gather(llvm::StringRef name, const llvm::CallInst& call);
    struct Spot;
    Spot spot(const Image& from, const llvm::CallInst& call);
    Id read(const llvm::CallInst& call);
    Id store(const llvm::CallInst& call);
    Id changeTexel(llvm::StringRef op, const llvm::CallInst& call);
    Id query(llvm::StringRef name, const llvm::CallInst& call);
    Id colorSoFar(const llvm::CallInst& call);

    Id levelOfDetail(const llvm::CallInst& call);
    Id combined(Image& image, const llvm::CallInst& call, bool compares);
    Id shifted(const Image& image, llvm::Type* type, const llvm::Value* offset);
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
    std::map<std::array<std::uint32_t, 3>, Image> images_; // by index, shape and level
    llvm::SmallDenseSet<std::uint64_t> atomics_; // indices of textures with atomic operations
    // Type and variable, by attachment and component.
    std::map<std::pair<std::uint32_t, std::uint32_t>, std::pair<Id, Id>> colors_;
    llvm::DenseMap<std::uint64_t, Id> samplers_;
    std::vector<Resource> resources_;
};

} // namespace tarnwick::msl::spirv
