#include "TarnwickMSL/Translation/FrontEnd.h"
#include "TarnwickMSL/Translation/FrontEnd/Compiler.h"
#include "TarnwickMSL/Translation/FrontEnd/LibraryText.h"
#include "TarnwickMSL/Translation/FrontEnd/Session.h"

#include <clang/AST/ASTConsumer.h>
#include <clang/AST/ASTContext.h>
#include <clang/AST/DeclCXX.h>
#include <clang/AST/DeclTemplate.h>
#include <clang/Basic/Version.h>
#include <clang/Frontend/FrontendAction.h>
#include <clang/Serialization/ASTWriter.h>
#include <llvm/ADT/StringExtras.h>
#include <llvm/Support/xxhash.h>

#include <algorithm>
#include <stdexcept>

namespace tarnwick::msl {
namespace {

class LibraryAction : public MetalAction {
  public:
    std::shared_ptr<clang::PCHBuffer> buffer = std::make_shared<clang::PCHBuffer>();

  protected:
    bool BeginSourceFileAction(clang::CompilerInstance& instance) override {
        instance.getLangOpts().CompilingPCH = true;
        return true;
    }
    clang::TranslationUnitKind getTranslationUnitKind() override { return clang::TU_Prefix; }
    std::unique_ptr<clang::ASTConsumer> CreateASTConsumer(clang::CompilerInstance& instance,
                                                          llvm::StringRef) override {
        return std::make_unique<clang::PCHGenerator>(
            instance.getPreprocessor(), instance.getModuleCache(), precompiledFile, "", buffer,
            llvm::ArrayRef<std::shared_ptr<clang::ModuleFileExtension>>{}, false, false);
    }
};

// Lists the functions of all namespaces, without internal ones (`_name`, `msl_name`).
class Listing : public clang::ASTConsumer {
  public:
    explicit Listing(std::vector<std::string>& functions) : functions(functions) {}
    void HandleTranslationUnit(clang::ASTContext& context) override {
        list(*context.getTranslationUnitDecl());
    }

  private:
    std::vector<std::string>& functions;

    static bool isInternal(const clang::NamedDecl& declaration) {
        return declaration.getDeclName().isIdentifier() &&
               (declaration.getName().starts_with("_") ||
                declaration.getName().starts_with("msl_"));
    }
    void list(const clang::DeclContext& space) {
        for (const clang::Decl* declaration : space.decls())
            if (const auto* linkage = llvm::dyn_cast<clang::LinkageSpecDecl>(declaration))
                list(*linkage);
            else if (const auto* named = llvm::dyn_cast<clang::NamedDecl>(declaration);
                     named && !isInternal(*named))
                list(*named, llvm::dyn_cast<clang::NamespaceDecl>(&space));
    }
    void list(const clang::NamedDecl& named, const clang::NamespaceDecl* space) {
        if (const auto* inner = llvm::dyn_cast<clang::NamespaceDecl>(&named))
            return list(static_cast<const clang::DeclContext&>(*inner));
        const clang::NamedDecl* target = named.getUnderlyingDecl(); // of a using-declaration
        const clang::FunctionDecl* function = target->getAsFunction();
        if (!function || !space ||
            function->getDeclName().getNameKind() != clang::DeclarationName::Identifier)
            return;
        functions.push_back(space->getQualifiedNameAsString() + "::" + function->getNameAsString() +
                            ": " +
                            (llvm::isa<clang::FunctionTemplateDecl>(target) ? "template " : "") +
                            function->getType().getAsString());
    }
};

class ListingAction : public MetalAction {
  public:
    std::vector<std::string> functions;

  protected:
    std::unique_ptr<clang::ASTConsumer> CreateASTConsumer(clang::CompilerInstance&,
                                                          llvm::StringRef) override {
        return std::make_unique<Listing>(functions);
    }
};

void readLibrary(clang::FrontendAction& action) {
    std::string text;
    Compiler compiler(Compiler::Work::library, fileSystem(), text);
    const clang::InputKind kind(clang::Language::CXX, clang::InputKind::Source, false,
                                clang::InputKind::HeaderUnit_None, true);
    if (!compiler.execute(action, clang::FrontendInputFile(prefixFile, kind)))
        throw std::runtime_error("The standard library does not compile.\n" + text);
}

} // namespace

StandardLibrary StandardLibrary::build() {
    LibraryAction action;
    readLibrary(action);
    if (!action.buffer->IsComplete)
        throw std::runtime_error("The standard library was not precompiled.");
    return fromPrecompiled(std::string(action.buffer->Data.begin(), action.buffer->Data.end()));
}

std::vector<std::string> StandardLibrary::functions() {
    ListingAction action;
    readLibrary(action);
    std::ranges::sort(action.functions);
    return std::move(action.functions);
}

StandardLibrary StandardLibrary::fromPrecompiled(std::string bytes) {
    StandardLibrary library;
    library.precompiled_ = std::make_shared<const std::string>(std::move(bytes));
    // Made once: a file system hashes the bytes of its files.
    library.files_ = std::make_shared<FileSystem>(fileSystem(*library.precompiled_));
    library.session_ = std::make_shared<KeptSession>();
    return library;
}

bool StandardLibrary::isOpen() const {
    return session_->value && session_->value->isOpen();
}

std::string StandardLibrary::fingerprint() {
    std::string all = clang::getClangFullVersion();
    for (const char* option : compilerOptions())
        all += option;
    for (const LibraryFile& file : libraryFiles())
        all.append(file.name).append(file.text);
    return llvm::utohexstr(llvm::xxh3_64bits(all), true, 16);
}

} // namespace tarnwick::msl
