#include "TarnwickMSL/Translation/FrontEnd/MetalTarget.h"

#include <clang/Basic/Builtins.h>
#include <clang/Basic/TargetInfo.h>
#include <clang/Frontend/CompilerInstance.h>

namespace tarnwick::msl {
namespace {

// A copy of Clang's target for the triple with other sizes of pointers. Clang takes the type of
// indices in its code from the longest pointer, and the layout of records from the default one.
class MetalTarget final : public clang::TargetInfo {
  public:
    explicit MetalTarget(const clang::TargetInfo& original) : TargetInfo(original) {
        PointerWidth = PointerAlign = 64;
        IntPtrType = SignedLong;
        constexpr llvm::StringLiteral before = "e-p:32:32-", after = "e-p:64:64:64:32-";
        llvm::StringRef layout = getDataLayoutString();
        if (layout.consume_front(before))
            resetDataLayout((after + layout).str());
    }
    virtual ~MetalTarget() = default;

    uint64_t getMaxPointerWidth() const override { return 32; }
    clang::CallingConv getDefaultCallingConv() const override { return clang::CC_SpirFunction; }
    CallingConvCheckResult checkCallingConvention(clang::CallingConv convention) const override {
        return convention == clang::CC_SpirFunction ? CCCR_OK : CCCR_Warning;
    }

    void getTargetDefines(const clang::LangOptions&, clang::MacroBuilder&) const override {}
    llvm::ArrayRef<clang::Builtin::Info> getTargetBuiltins() const override { return {}; }
    BuiltinVaListKind getBuiltinVaListKind() const override { return VoidPtrBuiltinVaList; }
    std::string_view getClobbers() const override { return {}; }
    bool validateAsmConstraint(const char*&, ConstraintInfo&) const override { return false; }

  private:
    llvm::ArrayRef<const char*> getGCCRegNames() const override { return {}; }
    llvm::ArrayRef<GCCRegAlias> getGCCRegAliases() const override { return {}; }
};

} // namespace

void useMetalTarget(clang::CompilerInstance& instance) {
    instance.setTarget(new MetalTarget(instance.getTarget()));
}

} // namespace tarnwick::msl
