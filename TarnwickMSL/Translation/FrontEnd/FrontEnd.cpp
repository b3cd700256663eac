#include "TarnwickMSL/Translation/FrontEnd.h"

#include "TarnwickMSL/Translation/FrontEnd/Attributes.h"
#include "TarnwickMSL/Translation/FrontEnd/Entries.h"
#include "TarnwickMSL/Translation/FrontEnd/LibraryText.h"
#include "TarnwickMSL/Translation/FrontEnd/Messages.h"
#include "TarnwickMSL/Translation/FrontEnd/Rules.h"
#include "TarnwickMSL/Translation/FrontEnd/Tokens.h"
#include "TarnwickMSL/Translation/FrontEnd/Warnings.h"

#include <clang/AST/ASTConsumer.h>
#include <clang/AST/ASTContext.h>
#include <clang/AST/ExternalASTSource.h>
#include <clang/Basic/Version.h>
#include <clang/CodeGen/ModuleBuilder.h>
#include <clang/Frontend/CompilerInstance.h>
#include <clang/Frontend/CompilerInvocation.h>
#include <clang/Frontend/FrontendAction.h>
#include <clang/Lex/Preprocessor.h>
#include <clang/Lex/PreprocessorOptions.h>
#include <clang/Parse/Parser.h>
#include <clang/Sema/EnterExpressionEvaluationContext.h>
#include <clang/Sema/Sema.h>
#include <clang/Serialization/ASTWriter.h>
#include <llvm/ADT/StringExtras.h>
#include <llvm/IR/LLVMContext.h>
#include <llvm/IR/Module.h>
#include <llvm/Support/VirtualFileSystem.h>
#include <llvm/Support/xxhash.h>

#include <stdexcept>

namespace tarnwick::msl {
namespace {

using FileSystem = llvm::IntrusiveRefCntPtr<llvm::vfs::InMemoryFileSystem>;

constexpr const char* prefixFile = "/metal/prefix.h"; // what is precompiled
constexpr const char* precompiledFile = "/metal/metal.pch";

// The library's other headers: all of it comes with metal_stdlib.
constexpr const char* otherHeaders[] = {
    "metal_math",        "metal_common",    "metal_geometric",       "metal_relational",
    "metal_integer",     "metal_matrix",    "metal_texture",         "metal_atomic",
    "metal_compute",     "metal_graphics",  "metal_types",           "metal_pack",
    "metal_array",       "metal_simdgroup", "metal_limits",          "metal_numeric",
    "metal_assert",      "metal_config",    "metal_extended_vector", "metal_packed_vector",
    "metal_type_traits", "metal_utility",   "metal_quadgroup",       "simd/simd.h",
    "metal_stdlib.h"};

FileSystem fileSystem(std::string_view precompiled) {
    FileSystem files = new llvm::vfs::InMemoryFileSystem;
    auto add = [&](const std::string& path, std::string_view text) {
        files->addFile(path, 0, llvm::MemoryBuffer::getMemBuffer(text, path, false));
    };
    for (const LibraryFile& file : libraryFiles())
        add(std::string(libraryFolder) + std::string(file.name), file.text);
    for (const char* header : otherHeaders)
        add(std::string(libraryFolder) + header, "#include <metal_stdlib>\n");
    add(prefixFile, "#include <metal_stdlib>\n");
    if (!precompiled.empty())
        add(precompiledFile, precompiled);
    return files;
}

// The same options for the library and the programs, as a precompiled header demands.
std::vector<const char*> compilerOptions() {
    return {"-triple",
            "spir-unknown-unknown",
            "-x",
            "c++",
            "-std=c++17",
            "-O2",
            "-disable-llvm-passes",
            "-disable-lifetime-markers",
            "-relaxed-aliasing",
            "-disable-free",
            "-fno-rtti",
            "-ffreestanding",
            "-fno-builtin",
            "-fdeclspec",
            "-fno-threadsafe-statics",
            "-cl-single-precision-constant",
            "-fnative-half-type",
            "-fnative-half-arguments-and-returns",
            "-fno-signed-zeros",
            "-freciprocal-math",
            "-fapprox-func",
            "-ffp-contract=fast",
            "-fexperimental-strict-floating-point", // else float_control is ignored here
            "-fgnuc-version=0",
            "-fpreserve-vec3-type",
            "-fpch-instantiate-templates",
            "-nostdsysteminc",
            "-nobuiltininc",
            "-internal-isystem",
            "/metal",
            "-ferror-limit",
            "20",
            "-Wno-c++11-narrowing",
            "-Wno-duplicate-decl-specifier",
            "-Wno-ignored-attributes",
            "-Wno-undefined-internal",
            "-Wno-undefined-inline",
            "-Wno-unused-value",
            "-Wno-literal-conversion",
            "-Wno-pragma-once-outside-header",
            "-D__METAL__=1",
            "-D__METAL_VERSION__=310",
            "-DMETAL_INTERNAL_STD_VERSION=310",
            "-D__HAVE_NATIVE_DOUBLE__=0"};
}

class Compiler {
  public:
    enum class Work { library, program };
    Compiler(Work work, FileSystem files, std::string& text, std::string moreWarningsIn = {})
        : out(text),
          messages(out, work == Work::library ? Messages::About::library : Messages::About::program,
                   moreWarningsIn),
          instance(std::make_shared<clang::PCHContainerOperations>()) {
        registerAttributes();
        instance.setVerboseOutputStream(out);
        clang::IgnoringDiagConsumer nobody;
        clang::DiagnosticsEngine ignored(new clang::DiagnosticIDs, new clang::DiagnosticOptions,
                                         &nobody, false);
        std::vector<const char*> options = compilerOptions();
        if (!moreWarningsIn.empty())
            options.insert(options.end(), moreWarnings.begin(), moreWarnings.end());
        clang::CompilerInvocation::CreateFromArgs(instance.getInvocation(), options, ignored);
        instance.createDiagnostics(&messages, false);
        instance.getLangOpts().Half = 1;
        instance.getFrontendOpts().DisableFree = 0;
        clang::PreprocessorOptions& preprocessing = instance.getPreprocessorOpts();
        preprocessing.DisablePCHOrModuleValidation = clang::DisableValidationForModuleKind::All;
        if (work == Work::program)
            preprocessing.ImplicitPCHInclude = precompiledFile;
        instance.createFileManager(std::move(files));
    }

    void keepPlaces() {
        instance.getCodeGenOpts().setDebugInfo(llvm::codegenoptions::LocTrackingOnly);
    }

    bool execute(clang::FrontendAction& action, clang::FrontendInputFile input) {
        instance.getFrontendOpts().Inputs = {std::move(input)};
        return instance.ExecuteAction(action);
    }

  private:
    llvm::raw_string_ostream out;
    Messages messages;
    clang::CompilerInstance instance;
};

class LibraryAction : public clang::ASTFrontendAction {
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

// Keeps the program's declarations until all are parsed and checked, then generates their code.
class ProgramConsumer : public clang::ASTConsumer {
  public:
    ProgramConsumer(clang::CompilerInstance& instance, llvm::LLVMContext& context, Parsed& parsed,
                    llvm::StringRef moreWarningsIn)
        : parsed(parsed), instance(instance), moreWarningsIn(moreWarningsIn),
          generator(clang::CreateLLVMCodeGen(
              instance.getDiagnostics(), "program", &instance.getVirtualFileSystem(),
              instance.getHeaderSearchOpts(), instance.getPreprocessorOpts(),
              instance.getCodeGenOpts(), context)) {}

    void Initialize(clang::ASTContext& context) override { generator->Initialize(context); }
    bool HandleTopLevelDecl(clang::DeclGroupRef group) override {
        // A library function that only the generated code of another one names is read from the
        // precompiled library then.
        if (isGenerating)
            return generator->HandleTopLevelDecl(group);
        groups.push_back(group);
        return true;
    }
    void HandleInlineFunctionDefinition(clang::FunctionDecl* function) override {
        generator->HandleInlineFunctionDefinition(function);
    }
    void HandleTagDeclDefinition(clang::TagDecl* tag) override {
        generator->HandleTagDeclDefinition(tag);
    }
    void HandleTagDeclRequiredDefinition(const clang::TagDecl* tag) override {
        generator->HandleTagDeclRequiredDefinition(tag);
    }
    void HandleCXXImplicitFunctionInstantiation(clang::FunctionDecl* function) override {
        generator->HandleCXXImplicitFunctionInstantiation(function);
    }
    void HandleCXXStaticMemberVarInstantiation(clang::VarDecl* variable) override {
        generator->HandleCXXStaticMemberVarInstantiation(variable);
    }
    void HandleVTable(clang::CXXRecordDecl*) override {}
    void HandleTranslationUnit(clang::ASTContext& context) override;

  private:
    Parsed& parsed;
    clang::CompilerInstance& instance;
    llvm::StringRef moreWarningsIn;
    std::unique_ptr<clang::CodeGenerator> generator;
    std::vector<clang::DeclGroupRef> groups;
    bool isGenerating = false;

    std::vector<clang::Decl*> userDeclarations() const;
    void hideInternals(const std::vector<Entry>& entries);
};

std::vector<clang::Decl*> ProgramConsumer::userDeclarations() const {
    std::vector<clang::Decl*> program;
    for (const clang::DeclGroupRef& group : groups)
        for (clang::Decl* declaration : group)
            if (!declaration->isFromASTFile())
                program.push_back(declaration);
    return program;
}

void ProgramConsumer::HandleTranslationUnit(clang::ASTContext& context) {
    clang::DiagnosticsEngine& diagnostics = instance.getDiagnostics();
    const std::vector<clang::Decl*> program = userDeclarations();
    std::vector<Entry> entries;
    if (!diagnostics.hasErrorOccurred()) {
        checkRules(context, program);
        entries = readEntries(context, program);
    }
    if (diagnostics.hasErrorOccurred())
        return;
    if (!moreWarningsIn.empty())
        warnMore(context, program, moreWarningsIn);
    isGenerating = true;
    for (const clang::DeclGroupRef& group : groups)
        generator->HandleTopLevelDecl(group);
    completeEntries(entries, *generator);
    generator->HandleTranslationUnit(context);
    if (diagnostics.hasErrorOccurred())
        return;
    parsed.module.reset(generator->ReleaseModule());
    hideInternals(entries);
    for (Entry& entry : entries)
        parsed.entries.push_back(std::move(entry.signature));
}

// Only entry points are seen from outside.
void ProgramConsumer::hideInternals(const std::vector<Entry>& entries) {
    for (llvm::Function& function : *parsed.module) {
        if (function.isDeclaration())
            continue;
        bool isEntry = false;
        for (const Entry& entry : entries)
            isEntry = isEntry || function.getName() == entry.signature.symbol;
        function.setLinkage(isEntry ? llvm::GlobalValue::ExternalLinkage
                                    : llvm::GlobalValue::InternalLinkage);
        function.setComdat(nullptr);
    }
    for (llvm::GlobalVariable& variable : parsed.module->globals())
        if (!variable.isDeclaration() && !variable.hasAppendingLinkage()) {
            variable.setLinkage(llvm::GlobalValue::InternalLinkage);
            variable.setComdat(nullptr);
        }
}

class ProgramAction : public clang::ASTFrontendAction {
  public:
    ProgramAction(llvm::LLVMContext& context, Parsed& parsed, llvm::StringRef moreWarningsIn)
        : context(context), parsed(parsed), moreWarningsIn(moreWarningsIn) {}

  protected:
    std::unique_ptr<clang::ASTConsumer> CreateASTConsumer(clang::CompilerInstance& instance,
                                                          llvm::StringRef) override {
        return std::make_unique<ProgramConsumer>(instance, context, parsed, moreWarningsIn);
    }
    void ExecuteAction() override;

  private:
    llvm::LLVMContext& context;
    Parsed& parsed;
    llvm::StringRef moreWarningsIn;
};

// Clang's own order of parsing, with the pass over the tokens before it.
void ProgramAction::ExecuteAction() {
    clang::CompilerInstance& instance = getCompilerInstance();
    instance.createSema(clang::TU_Complete, nullptr);
    clang::Sema& sema = instance.getSema();
    clang::ASTConsumer& consumer = instance.getASTConsumer();
    clang::Preprocessor& preprocessor = instance.getPreprocessor();
    clang::Parser parser(preprocessor, sema, false); // installs the pragmas
    preprocessor.EnterMainSourceFile();
    if (clang::ExternalASTSource* external = sema.getASTContext().getExternalSource())
        external->StartTranslationUnit(&consumer);
    const std::vector<clang::Token> tokens = programTokens(preprocessor);
    preprocessor.EnterTokenStream(tokens, true, false);
    parser.Initialize();
    // Lets ++ and -- take vectors; set only now, so that none of that dialect's words are known.
    instance.getLangOpts().ZVector = 1;
    clang::Parser::DeclGroupPtrTy group;
    clang::Sema::ModuleImportState state;
    clang::EnterExpressionEvaluationContext evaluated(
        sema, clang::Sema::ExpressionEvaluationContext::PotentiallyEvaluated);
    for (bool isEnd = parser.ParseFirstTopLevelDecl(group, state); !isEnd;
         isEnd = parser.ParseTopLevelDecl(group, state))
        if (group)
            consumer.HandleTopLevelDecl(group.get());
    consumer.HandleTranslationUnit(sema.getASTContext());
}

} // namespace

StandardLibrary StandardLibrary::build() {
    std::string text;
    LibraryAction action;
    Compiler compiler(Compiler::Work::library, fileSystem({}), text);
    const clang::InputKind kind(clang::Language::CXX, clang::InputKind::Source, false,
                                clang::InputKind::HeaderUnit_None, true);
    if (!compiler.execute(action, clang::FrontendInputFile(prefixFile, kind)) ||
        !action.buffer->IsComplete)
        throw std::runtime_error("The standard library does not compile.\n" + text);
    return fromPrecompiled(std::string(action.buffer->Data.begin(), action.buffer->Data.end()));
}

StandardLibrary StandardLibrary::fromPrecompiled(std::string bytes) {
    StandardLibrary library;
    library.precompiled_ = std::make_shared<const std::string>(std::move(bytes));
    // Made once: the file system takes a hash of all its bytes.
    library.files_ = std::make_shared<FileSystem>(fileSystem(*library.precompiled_));
    return library;
}

std::string StandardLibrary::fingerprint() {
    std::string all = clang::getClangFullVersion();
    for (const char* option : compilerOptions())
        all += option;
    for (const LibraryFile& file : libraryFiles())
        all.append(file.name).append(file.text);
    return llvm::utohexstr(llvm::xxh3_64bits(all), true, 16);
}

Parsed parse(std::string_view source, const StandardLibrary& library, llvm::LLVMContext& context,
             const ParseOptions& options) {
    Parsed parsed;
    const std::string text(source); // ends in a zero, as Clang's lexer wants
    {
        Compiler compiler(Compiler::Work::program, *static_cast<FileSystem*>(library.files_.get()),
                          parsed.messages, options.moreWarningsIn);
        if (options.places == Places::kept)
            compiler.keepPlaces();
        ProgramAction action(context, parsed, options.moreWarningsIn);
        const llvm::MemoryBufferRef buffer(text, "program_source");
        const bool isGood = compiler.execute(
            action, clang::FrontendInputFile(buffer, clang::InputKind(clang::Language::CXX)));
        parsed.failed = !isGood || !parsed.module;
    }
    if (parsed.failed)
        parsed.module.reset();
    return parsed;
}

} // namespace tarnwick::msl
