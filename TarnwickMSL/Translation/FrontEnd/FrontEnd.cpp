#include "TarnwickMSL/Translation/FrontEnd.h"

#include "TarnwickMSL/Translation/FrontEnd/Compiler.h"
#include "TarnwickMSL/Translation/FrontEnd/Entries.h"
#include "TarnwickMSL/Translation/FrontEnd/FunctionConstants.h"
#include "TarnwickMSL/Translation/FrontEnd/Rules.h"
#include "TarnwickMSL/Translation/FrontEnd/Tokens.h"
#include "TarnwickMSL/Translation/FrontEnd/Warnings.h"

#include <clang/AST/ASTConsumer.h>
#include <clang/AST/ASTContext.h>
#include <clang/AST/ExternalASTSource.h>
#include <clang/CodeGen/ModuleBuilder.h>
#include <clang/Frontend/CompilerInstance.h>
#include <clang/Frontend/FrontendAction.h>
#include <clang/Lex/Preprocessor.h>
#include <clang/Parse/Parser.h>
#include <clang/Sema/EnterExpressionEvaluationContext.h>
#include <clang/Sema/Sema.h>
#include <llvm/IR/LLVMContext.h>
#include <llvm/IR/Module.h>

namespace tarnwick::msl {
namespace {

// Collects the program's declarations; after the checks of the whole program it generates code.
class ProgramConsumer : public clang::ASTConsumer {
  public:
    ProgramConsumer(clang::CompilerInstance& instance, llvm::LLVMContext& context, Parsed& parsed,
                    const ParseOptions& options)
        : parsed(parsed), instance(instance), moreWarningsIn(options.moreWarningsIn),
          times(options.times),
          generator(clang::CreateLLVMCodeGen(
              instance.getDiagnostics(), "program", &instance.getVirtualFileSystem(),
              instance.getHeaderSearchOpts(), instance.getPreprocessorOpts(),
              instance.getCodeGenOpts(), context)) {}

    void Initialize(clang::ASTContext& context) override { generator->Initialize(context); }
    bool HandleTopLevelDecl(clang::DeclGroupRef group) override {
        // While code is generated, Clang reads more library functions from the precompiled header.
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
    StepTimes* times;
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
    std::vector<OpenConstant> constants;
    if (!diagnostics.hasErrorOccurred()) {
        checkRules(context, program);
        entries = readEntries(context, program);
        constants = readConstants(context, program);
    }
    if (diagnostics.hasErrorOccurred())
        return;
    if (!moreWarningsIn.empty())
        warnMore(context, program, moreWarningsIn);
    addTime(times, "rules");
    isGenerating = true;
    for (const clang::DeclGroupRef& group : groups)
        generator->HandleTopLevelDecl(group);
    completeEntries(entries, *generator);
    completeConstants(constants, *generator);
    generator->HandleTranslationUnit(context);
    if (diagnostics.hasErrorOccurred())
        return;
    parsed.module.reset(generator->ReleaseModule());
    hideInternals(entries);
    addTime(times, "generate");
    for (Entry& entry : entries)
        parsed.entries.push_back(std::move(entry.signature));
    for (OpenConstant& constant : constants)
        parsed.constants.push_back(std::move(constant.signature));
}

// Gives all symbols but the entry points internal linkage.
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

class ProgramAction : public MetalAction {
  public:
    ProgramAction(llvm::LLVMContext& context, Parsed& parsed, const ParseOptions& options)
        : context(context), parsed(parsed), options(options) {}

  protected:
    std::unique_ptr<clang::ASTConsumer> CreateASTConsumer(clang::CompilerInstance& instance,
                                                          llvm::StringRef) override {
        return std::make_unique<ProgramConsumer>(instance, context, parsed, options);
    }
    void ExecuteAction() override;

  private:
    llvm::LLVMContext& context;
    Parsed& parsed;
    const ParseOptions& options;
};

// Parses as clang::ParseAST does, but on the tokens of the token pass.
void ProgramAction::ExecuteAction() {
    addTime(options.times, "library");
    clang::CompilerInstance& instance = getCompilerInstance();
    instance.createSema(clang::TU_Complete, nullptr);
    clang::Sema& sema = instance.getSema();
    clang::ASTConsumer& consumer = instance.getASTConsumer();
    clang::Preprocessor& preprocessor = instance.getPreprocessor();
    clang::Parser parser(preprocessor, sema, false); // installs the pragmas
    preprocessor.EnterMainSourceFile();
    if (clang::ExternalASTSource* external = sema.getASTContext().getExternalSource())
        external->StartTranslationUnit(&consumer);
    const std::vector<clang::Token> tokens = programTokens(preprocessor, options.constants);
    addTime(options.times, "tokens");
    preprocessor.EnterTokenStream(tokens, true, false);
    parser.Initialize();
    // ZVector lets ++ and -- take vectors. Set after lexing, so that its keywords stay unknown.
    instance.getLangOpts().ZVector = 1;
    clang::Parser::DeclGroupPtrTy group;
    clang::Sema::ModuleImportState state;
    clang::EnterExpressionEvaluationContext evaluated(
        sema, clang::Sema::ExpressionEvaluationContext::PotentiallyEvaluated);
    for (bool isEnd = parser.ParseFirstTopLevelDecl(group, state); !isEnd;
         isEnd = parser.ParseTopLevelDecl(group, state))
        if (group)
            consumer.HandleTopLevelDecl(group.get());
    addTime(options.times, "parse");
    consumer.HandleTranslationUnit(sema.getASTContext());
}

} // namespace

Parsed parse(std::string_view source, const StandardLibrary& library, llvm::LLVMContext& context,
             const ParseOptions& options) {
    Parsed parsed;
    const std::string text(source); // zero-terminated, as Clang's lexer requires
    {
        Compiler compiler(Compiler::Work::program, *static_cast<FileSystem*>(library.files_.get()),
                          parsed.messages, options.moreWarningsIn);
        if (options.places == Places::kept)
            compiler.keepPlaces();
        ProgramAction action(context, parsed, options);
        addTime(options.times, "set-up");
        const llvm::MemoryBufferRef buffer(text, "program_source");
        const bool isGood = compiler.execute(
            action, clang::FrontendInputFile(buffer, clang::InputKind(clang::Language::CXX)));
        parsed.failed = !isGood || !parsed.module;
    }
    if (parsed.failed)
        parsed.module.reset();
    addTime(options.times, "take-down");
    return parsed;
}

} // namespace tarnwick::msl
