#include "TarnwickMSL/Translation/Passes/Forms/Text.h"
#include "tests/TarnwickMSL/Passes/Running.h"

#include <gtest/gtest.h>

#include <array>

namespace tarnwick::msl::test {

using Vector = std::array<std::uint32_t, 4>;

// A kernel over a buffer of one vector, %v, of which it makes another.
class VectorKernel {
  public:
    explicit VectorKernel(const std::string& body)
        : shader_(lowered("define void @k(ptr %p) {\n  %v = load <4 x i32>, ptr %p\n" + body +
                              "\n  ret void\n}",
                          context_, signature)),
          native_(*shader_.module) {}

    bool storesVectors() const {
        return text(shader_).find("store <4 x i32>") != std::string::npos;
    }
    bool loadsVectors() const { return text(shader_).find("load <4 x i32>") != std::string::npos; }
    Vector run(const Vector& before) const {
        auto& buffer = *static_cast<Vector*>(native_.address("msl.buffer.0"));
        auto* grid = static_cast<std::uint32_t*>(native_.address("msl.grid"));
        buffer = before;
        grid[0] = grid[1] = grid[2] = 1;
        reinterpret_cast<void (*)()>(native_.address("main"))();
        return buffer;
    }

  private:
    inline static const EntrySignature signature{.name = "k",
                                                 .symbol = "k",
                                                 .stage = Stage::kernel,
                                                 .arguments = {{.kind = ArgumentKind::buffer,
                                                                .space = AddressSpace::device,
                                                                .elementBytes = 16,
                                                                .elementType = "<4 x i32>"}}};
    llvm::LLVMContext context_;
    ShaderModule shader_;
    Native native_;
};

TEST(NarrowAccess, storesTheLanesThatChanged) {
    const VectorKernel kernel(R"(  %x = extractelement <4 x i32> %v, i32 2
  %y = mul i32 %x, 5
  %w = insertelement <4 x i32> %v, i32 %x, i32 3
  %u = insertelement <4 x i32> %w, i32 %y, i32 3
  store <4 x i32> %u, ptr %p)");
    EXPECT_FALSE(kernel.storesVectors());
    EXPECT_FALSE(kernel.loadsVectors());
    EXPECT_EQ(kernel.run({1, 2, 3, 4}), (Vector{1, 2, 3, 15}));
}

TEST(NarrowAccess, putsBackWhatWasThereBeforeAnotherStore) {
    const VectorKernel kernel(R"(  %x = extractelement <4 x i32> %v, i32 0
  %at = and i32 %x, 3
  %r = getelementptr i32, ptr %p, i32 %at
  store i32 77, ptr %r
  %w = insertelement <4 x i32> %v, i32 %x, i32 3
  store <4 x i32> %w, ptr %p)");
    EXPECT_EQ(kernel.run({2, 5, 6, 7}), (Vector{2, 5, 6, 2}));
}

} // namespace tarnwick::msl::test
