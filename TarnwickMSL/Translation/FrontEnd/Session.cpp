#include "TarnwickMSL/Translation/FrontEnd/Session.h"

#include "TarnwickMSL/Translation/FrontEnd/Entries.h"
#include "TarnwickMSL/Translation/FrontEnd/FunctionConstants.h"
#include "TarnwickMSL/Translation/FrontEnd/Reflecting.h"
#include "TarnwickMSL/Translation/FrontEnd/Rules.h"
#include "TarnwickMSL/Translation/FrontEnd/Session/LibraryChanges.h"
#include "TarnwickMSL/Translation/FrontEnd/Session/Macros.h"
#include "TarnwickMSL/Translation/FrontEnd/Session/ProgramConsumer.h"
#include "TarnwickMSL/Translation/FrontEnd/Session/Wrappers.h"
#include "TarnwickMSL/Translation/FrontEnd/Tokens.h"
#include "TarnwickMSL/Translation/FrontEnd/Uniforms.h"
#include "TarnwickMSL/Translation/FrontEnd/Warnings.h"

#include <clang/AST/ASTContext.h>
#include <clang/AST/DeclContextInternals.h>
#include <clang/AST/ExternalASTSource.h>
#include <clang/CodeGen/ModuleBuilder.h>
#include <clang/Lex/Preprocessor.h>
#include <clang/Parse/Parser.h>
#include <clang/Sema/EnterExpressionEvaluationContext.h>
#include <clang/Sema/Sema.h>
#include <llvm/IR/LLVMContext.h>
#include <llvm/IR/Module.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace tarnwick::msl {
namespace {

// Declarations of programs are never freed. Bytes of text.
constexpr std::size_t mostText = 1u << 19;

constexpr llvm::StringLiteral programName = "program_source";

class LibraryReading : public MetalAction {
  protected:
    std::unique_ptr<clang::ASTConsumer> CreateASTConsumer(clang::CompilerInstance&,
                                                          llvm::StringRef) override {
        return std::make_unique<clang::ASTConsumer>();
    }
    void ExecuteAction() override {}
};

// Gives all symbols but the entry points internal linkage.
void hideInternals(llvm::Module& module, const std::vector<Entry>& entries) {
    for (llvm::Function& function : module) {
        if (function.isDeclaration())
            continue;
        bool isEntry = false;
        for (const Entry& entry : entries)
            isEntry = isEntry || function.getName() == entry.signature.symbol;
        function.setLinkage(isEntry ? llvm::GlobalValue::ExternalLinkage
                                    : llvm::GlobalValue::InternalLinkage);
        function.setComdat(nullptr);
    }
    for (llvm::GlobalVariable& variable : module.globals())
        if (!variable.isDeclaration() && !variable.hasAppendingLinkage()) {
            variable.setLinkage(llvm::GlobalValue::InternalLinkage);
            variable.setComdat(nullptr);
        }
}

// Declarations that Clang makes itself, `__int128_t`, for every program.
bool isPredefined(const clang::NamedDecl* declaration) {
    return declaration->isImplicit() && llvm::isa<clang::TypedefNameDecl>(declaration);
}

bool isOfProgram(const clang::NamedDecl* declaration) {
    return !declaration->isFromASTFile() && !isPredefined(declaration);
}

// Clang's parser notes at a name its declaration, or with an odd address a list of them, which the
// Sema owns. Nothing reads the lists of the library: it is searched by its namespaces.
void forgetDeclarations(clang::DeclarationName name) {
    void* noted = name.getFETokenInfo();
    const bool isList = reinterpret_cast<std::uintptr_t>(noted) & 1;
    if (noted && (isList || isOfProgram(static_cast<clang::NamedDecl*>(noted))))
        name.setFETokenInfo(nullptr);
}

// Removes the names of the program.
void removeNames(clang::ASTContext& context, const clang::Preprocessor& preprocessor) {
    clang::TranslationUnitDecl* top = context.getTranslationUnitDecl();
    top->setAnonymousNamespace(nullptr);
    if (clang::StoredDeclsMap* names = top->getPrimaryContext()->getLookupPtr())
        for (auto&& [name, list] : *names) {
            llvm::SmallVector<clang::NamedDecl*, 4> own;
            llvm::copy_if(list.getLookupResult(), std::back_inserter(own), isOfProgram);
            for (clang::NamedDecl* declaration : own)
                list.remove(declaration);
        }
    for (const auto& identifier : preprocessor.getIdentifierTable())
        if (identifier.second)
            forgetDeclarations(identifier.second);
    for (int kind = 1; kind < clang::NUM_OVERLOADED_OPERATORS; ++kind)
        forgetDeclarations(context.DeclarationNames.getCXXOperatorName(
            static_cast<clang::OverloadedOperatorKind>(kind)));
}

// `#embed` and `__has_embed` ask Clang 19 for the file that they stand in, and a text in memory has
// none. All programs may have the same, because nothing includes it.
void giveFile(clang::SourceManager& sources, clang::FileID text, llvm::StringRef name) {
    const clang::SrcMgr::FileInfo& info = sources.getSLocEntry(text).getFile();
    const_cast<clang::SrcMgr::ContentCache&>(info.getContentCache()).OrigEntry =
        sources.getFileManager().getVirtualFileRef(name, 0, 0);
}

// Removes the program's tokens, which have two more ends than the parser reads: it may have looked
// at the second one.
void leaveTokens(clang::Preprocessor& preprocessor) {
    clang::Token end;
    preprocessor.Lex(end);
    preprocessor.Lex(end);
    preprocessor.RemoveTopOfLexerStack();
}

} // namespace

Session::Session(FileSystem files, const std::string& moreWarningsIn,
                 const std::vector<std::string>& includes)
    : moreWarningsIn(moreWarningsIn),
      compiler(Compiler::Work::program, std::move(files), text, moreWarningsIn, includes),
      action(std::make_unique<LibraryReading>()) {
    static constexpr llvm::StringLiteral nothing = "";
    const llvm::MemoryBufferRef buffer(nothing, programName);
    isBegun = compiler.begin(
        *action, clang::FrontendInputFile(buffer, clang::InputKind(clang::Language::CXX)));
    isOver = !isBegun;
    if (isOver)
        return;
    clang::Preprocessor& preprocessor = compiler.clang().getPreprocessor();
    preprocessor.EnterMainSourceFile();
    clang::Token token;
    do {
        preprocessor.Lex(token);
    } while (token.isNot(clang::tok::eof));
    auto noted = std::make_unique<Macros>(preprocessor);
    macros = noted.get();
    preprocessor.addPPCallbacks(std::move(noted));
}

Session::~Session() {
    tidy();
    if (isBegun)
        action->EndSourceFile();
}

Parsed Session::parse(std::string_view source, llvm::LLVMContext& context,
                      const ParseOptions& options) {
    last.reset();
    Parsed parsed;
    compiler.nextProgram(options.places == Places::kept);
    start(source);
    addTime(options.times, "set-up");
    parseInto(parsed, context, options);
    isGuess = std::exchange(isUsed, true) && compiler.clang().getSema().TyposCorrected > 0;
    isUntidy = true;
    finish(parsed);
    textBytes += source.size();
    isOver = isOver || parsed.failed || textBytes > mostText;
    if (!parsed.failed && parsed.messages.empty() && options.places == Places::left) {
        last.emplace();
        last->source = source;
        last->declarations = parsed.declarations = std::make_shared<char>();
        last->constants = options.constants;
    }
    return parsed;
}

std::optional<Parsed> Session::again(std::string_view source, llvm::LLVMContext& context,
                                     const ParseOptions& options) {
    if (!last || options.places == Places::kept || options.moreWarningsIn != moreWarningsIn ||
        options.constants != last->constants)
        return std::nullopt;
    clang::CompilerInstance& instance = compiler.clang();
    auto& consumer = static_cast<ProgramConsumer&>(instance.getASTConsumer());
    if (!last->numbers)
        last->numbers.emplace(last->source, instance.getASTContext(), consumer.declarations());
    const bool isTaken = last->numbers->take(source);
    addTime(options.times, "numbers");
    if (!isTaken) {
        last.reset();
        return std::nullopt;
    }
    Parsed parsed;
    parsed.declarations = last->declarations;
    compiler.nextProgram(false);
    generate(parsed, context, options, omitted(options));
    finish(parsed);
    if (!parsed.failed && parsed.messages.empty())
        return parsed;
    last.reset();
    return std::nullopt;
}

// The functions of the last program that need no code with its new numbers.
Symbols Session::omitted(const ParseOptions& options) {
    const auto& changed = last->numbers->changed();
    if (!options.omitted || !changed)
        return {};
    if (!symbols)
        symbols.emplace(compiler.clang().getASTContext());
    Symbols names;
    for (const clang::FunctionDecl* function : *changed)
        if (const auto symbol = symbols->of(*function))
            names.insert(*symbol);
        else if (!function->isDependentContext()) // its instances are listed as well
            return {};
    return options.omitted(last->declarations, names);
}

void Session::finish(Parsed& parsed) {
    compiler.endProgram();
    parsed.messages = std::exchange(text, {});
    parsed.diagnostics = compiler.takeDiagnostics();
    parsed.failed = compiler.clang().getDiagnostics().hasErrorOccurred() || !parsed.module;
    if (parsed.failed)
        parsed.module.reset();
}

void Session::start(std::string_view source) {
    clang::CompilerInstance& instance = compiler.clang();
    clang::SourceManager& sources = instance.getSourceManager();
    instance.getLangOpts().ZVector = 0;
    const clang::FileID text =
        sources.createFileID(llvm::MemoryBuffer::getMemBufferCopy(source, programName));
    if (llvm::StringRef(source).contains("embed"))
        giveFile(sources, text, programName);
    sources.setMainFileID(text);
    instance.getASTContext().getExternalSource()->StartTranslationUnit(nullptr);
    instance.setASTConsumer(std::make_unique<ProgramConsumer>());
    instance.createSema(clang::TU_Complete, nullptr);
    for (clang::TypedefNameDecl* type : vectorTypes)
        instance.getSema().ExtVectorDecls.push_back(type);
    if (standardNamespace) // with initializer_list
        instance.getSema().StdNamespace = standardNamespace;
}

// Parses as clang::ParseAST does, but on the tokens of the token pass.
void Session::parseInto(Parsed& parsed, llvm::LLVMContext& context, const ParseOptions& options) {
    clang::CompilerInstance& instance = compiler.clang();
    clang::Sema& sema = instance.getSema();
    clang::ASTConsumer& consumer = instance.getASTConsumer();
    clang::Preprocessor& preprocessor = instance.getPreprocessor();
    clang::Parser parser(preprocessor, sema, false); // installs the pragmas
    preprocessor.EnterSourceFile(instance.getSourceManager().getMainFileID(), nullptr, {});
    sema.getASTContext().getExternalSource()->StartTranslationUnit(&consumer);
    std::vector<clang::Token> tokens = programTokens(preprocessor, options.constants);
    tokens.insert(tokens.end(), 2, clang::Token(tokens.back())); // for leaveTokens
    addTime(options.times, "tokens");
    preprocessor.EnterTokenStream(tokens, true, false);
    parser.Initialize();
    // ZVector lets ++ and -- take vectors. Set after lexing, so that its keywords stay unknown.
    instance.getLangOpts().ZVector = 1;
    clang::Parser::DeclGroupPtrTy group;
    clang::Sema::ModuleImportState state;
    {
        clang::EnterExpressionEvaluationContext evaluated(
            sema, clang::Sema::ExpressionEvaluationContext::PotentiallyEvaluated);
        for (bool isEnd = parser.ParseFirstTopLevelDecl(group, state); !isEnd;
             isEnd = parser.ParseTopLevelDecl(group, state))
            if (group)
                consumer.HandleTopLevelDecl(group.get());
    }
    addTime(options.times, "parse");
    if (check()) {
        addTime(options.times, "rules");
        generate(parsed, context, options);
    }
    if (instance.getDiagnostics().hasErrorOccurred())
        isOver = true;
    else
        leaveTokens(preprocessor);
}

// Checks what Clang does not. False if there are errors.
bool Session::check() {
    clang::CompilerInstance& instance = compiler.clang();
    const std::vector<clang::Decl*> program =
        static_cast<ProgramConsumer&>(instance.getASTConsumer()).declarations();
    if (instance.getDiagnostics().hasErrorOccurred())
        return false;
    isOver = changesLibrary(program);
    checkRules(instance.getASTContext(), program);
    checkUniforms(instance.getASTContext(), program);
    return true;
}

void Session::generate(Parsed& parsed, llvm::LLVMContext& context, const ParseOptions& options,
                       const Symbols& omitted) {
    clang::CompilerInstance& instance = compiler.clang();
    clang::ASTContext& declarations = instance.getASTContext();
    auto& consumer = static_cast<ProgramConsumer&>(instance.getASTConsumer());
    clang::DiagnosticsEngine& diagnostics = instance.getDiagnostics();
    const std::vector<clang::Decl*> program = consumer.declarations();
    std::vector<Entry> entries = readEntries(declarations, program);
    std::vector<OpenConstant> constants = readConstants(declarations, program);
    if (diagnostics.hasErrorOccurred())
        return;
    if (!moreWarningsIn.empty())
        warnMore(declarations, program, moreWarningsIn);
    // Making the generator sets this option of the context again.
    instance.getCodeGenOpts().DiscardValueNames = context.shouldDiscardValueNames();
    const std::unique_ptr<clang::CodeGenerator> generator(clang::CreateLLVMCodeGen(
        diagnostics, "program", &instance.getVirtualFileSystem(), instance.getHeaderSearchOpts(),
        instance.getPreprocessorOpts(), instance.getCodeGenOpts(), context));
    generator->Initialize(declarations);
    declarations.getExternalSource()->StartTranslationUnit(&consumer);
    const LibraryUses::Found library = libraryUses.of(program, consumer.otherFunctions());
    const DirectCalls direct(declarations, library.wrappers);
    consumer.passTo(*generator, library, [&](const clang::FunctionDecl& function) {
        const auto symbol = omitted.empty() ? std::nullopt : symbols->of(function);
        return symbol && omitted.contains(*symbol);
    });
    completeEntries(entries, *generator);
    completeConstants(constants, *generator);
    if (options.reflects)
        parsed.reflection = reflect(declarations, entries);
    generator->HandleTranslationUnit(declarations);
    consumer.end();
    if (diagnostics.hasErrorOccurred())
        return;
    parsed.module.reset(generator->ReleaseModule());
    hideInternals(*parsed.module, entries);
    addTime(options.times, "generate");
    for (Entry& entry : entries)
        parsed.entries.push_back(std::move(entry.signature));
    for (OpenConstant& constant : constants)
        parsed.constants.push_back(std::move(constant.signature));
}

void Session::tidy() {
    if (!std::exchange(isUntidy, false))
        return;
    clang::CompilerInstance& instance = compiler.clang();
    clang::Sema& sema = instance.getSema();
    if (vectorTypes.empty())
        std::copy_if(sema.ExtVectorDecls.begin(sema.getExternalSource()), sema.ExtVectorDecls.end(),
                     std::back_inserter(vectorTypes),
                     [](const clang::Decl* type) { return type->isFromASTFile(); });
    if (!standardNamespace)
        standardNamespace = sema.getStdNamespace();
    const bool isRemoved = macros->remove(instance.getPreprocessor());
    isOver = isOver || !isRemoved;
    instance.setSema(nullptr);
    removeNames(instance.getASTContext(), instance.getPreprocessor());
}

} // namespace tarnwick::msl
