// Textures and samplers: their variables, and the calls on them (docs/compiler.md). SampleCalls.cpp
// has samples, comparisons and gathers, TexelCalls.cpp single texels and sizes.
#pragma once

#include "TarnwickMSL/Translation/Wgsl/Body.h"
#include "TarnwickMSL/Translation/Wgsl/SampleFunctions.h"

#include <array>
#include <functional>
#include <map>
#include <optional>

namespace tarnwick::msl::wgsl {

class Textures {
  public:
    // Samplers take the bindings from `nextBinding` on.
    Textures(Body& body, std::uint32_t nextBinding) : body_(body), nextBinding_(nextBinding) {}

    std::uint32_t takeBinding() { return nextBinding_++; } // for a resource of another kind

    // Whether NAME is a call on a texture.
    static bool takes(llvm::StringRef name);
    // Absent if the call is a statement. Throws TranslationError on what WGSL lacks.
    std::optional<Expression> write(llvm::StringRef name, const llvm::CallInst& call);

    const std::vector<Resource>& resources() const { return resources_; }

  private:
    // A view of a texture. Most textures have one. Single texels of a cube are read from a view as
    // a 2D array, and each level that is stored to has a view of its own.
    struct Image {
        const TextureVariable* texture = nullptr;
        TextureShape shape = TextureShape::none; // the view's
        std::uint32_t level = 0;                 // of a written view
        bool isStorage = false;
        std::string name;
    };

    Image& image(const llvm::Value* handle, bool ofTexels = false, std::uint32_t level = 0);
    Image& texels(const llvm::CallInst& call, unsigned levelOperand);
    const TextureVariable& texture(const llvm::Value* handle) const;
    void declare(Image& made);
    std::string typeOf(const Image& image, Resource& resource) const;
    std::string sampler(std::uint64_t bits, bool compares);
    std::string levelSampler(const SamplerState& state, bool compares);

    // How a call chooses the level.
    enum class LevelKind : std::uint8_t { implied, given, biased, sloped };
    struct Sampled {
        const llvm::CallInst* call;
        Image* from; // of the faces as layers, if texels of a cube are loaded
        const Shape* shape;
        SamplerState state; // of a constant sampler
        std::uint64_t bits;
        bool isArgument; // the sampler
        bool isInteger;
        LevelKind kind;
        unsigned first; // the operand of the level, of the bias or of the first gradient
        const llvm::Value* offset;
        std::vector<Expression> place = {};   // coordinates and layer
        std::optional<Expression> shift = {}; // the offset, if it may stand in a call
    };
    Sampled sampled(const llvm::CallInst& call, llvm::StringRef kind, unsigned first,
                    const llvm::Value* offset);
    void place(Sampled& of, bool hasLayer = true);
    std::optional<Expression> level(Sampled& of);
    Expression levelOf(const Sampled& of, Expression across, Expression down);
    Expression withinLevels(const Sampled& of, const Expression& level);
    Expression lastLevel(const Sampled& of);
    using SampleOfLevel = std::function<Expression(SamplerFilter, const Expression& level)>;
    Expression atLevels(Sampled& of, const SampleOfLevel& sample);
    SampleForm formOf(const Sampled& of, bool compares);
    Expression sampleIntegers(Sampled& of);
    Expression sampleLevels(Sampled& of);
    Expression sample(llvm::StringRef name, const llvm::CallInst& call);
    Expression compareLevels(Sampled& of, const Expression& reference);
    Expression compare(llvm::StringRef name, const llvm::CallInst& call);
    Expression gather(llvm::StringRef name, const llvm::CallInst& call);
    Expression queryLevel(const llvm::CallInst& call);
    Expression texel(const Image& image, const llvm::CallInst& call, const Expression& value);

    struct Spot {
        Expression at, level, inside;
    };
    Spot spot(const Image& from, const llvm::CallInst& call);
    Expression read(const llvm::CallInst& call);
    void store(const llvm::CallInst& call);
    Expression query(llvm::StringRef name, const llvm::CallInst& call);
    Expression colorSoFar(const llvm::CallInst& call);

    Expression size(const Image& image, const Expression& level);

    Body& body_;
    std::uint32_t nextBinding_;
    std::map<std::array<std::uint32_t, 3>, Image> images_; // by index, shape and level
    std::map<std::pair<std::uint32_t, std::string>, std::string> colors_;
    std::map<std::pair<std::uint64_t, bool>, std::string> samplers_;
    std::vector<Resource> resources_;
};

} // namespace tarnwick::msl::wgsl
