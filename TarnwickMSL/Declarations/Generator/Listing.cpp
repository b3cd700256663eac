#include "TarnwickMSL/Declarations/Generator/Listing.h"

#include "TarnwickMSL/Translation/FrontEnd/Attributes.h"
#include "TarnwickMSL/Translation/FrontEnd/Compiler.h"
#include "TarnwickMSL/Translation/FrontEnd/LibraryText.h"

#include <clang/AST/ASTConsumer.h>
#include <clang/AST/ASTContext.h>
#include <clang/AST/DeclCXX.h>
#include <clang/AST/DeclTemplate.h>
#include <clang/Lex/Preprocessor.h>

#include <algorithm>
#include <array>
#include <set>
#include <stdexcept>
#include <utility>

namespace tarnwick::msl {
namespace {

constexpr const char* instancesFile = "/metal/instances.h";

// Headers with names for the library itself, and namespaces with functions of other names.
constexpr std::array<std::string_view, 2> internalFiles{"types/scalars.h", "types/traits.h"};
constexpr std::array<std::string_view, 2> repeatingSpaces{"fast", "precise"};
// Types of the library itself in headers that also have types for programs.
constexpr std::array<std::string_view, 2> internalTypes{"column_list", "vector_traits"};
// Endings of types whose members are the components of a vector.
constexpr std::array<std::string_view, 3> endingsOfVectors{"_swizzles", "_lanes", "_vector"};
// Variables with the library's own representation of a value, or of an argument of a sampler or of
// a function of textures: programs construct them and pass them on.
constexpr std::array<std::string_view, 10> representations{
    "handle", "bits", "value", "flags", "dPdx", "dPdy", "lod", "samples", "greatest", "least"};

bool isInternal(llvm::StringRef name) {
    return name.empty() || name.starts_with("_") || name.starts_with("msl_") ||
           name.starts_with("MSL_") || name.starts_with("METAL_");
}

bool isInternal(const clang::NamedDecl& declaration) {
    return !declaration.getDeclName().isIdentifier() || isInternal(declaration.getName());
}

bool isVector(const clang::NamedDecl& declaration) {
    return std::ranges::any_of(endingsOfVectors, [&](std::string_view ending) {
        return declaration.getNameAsString().ends_with(ending);
    });
}

// Parameters of internal types only tell overloads apart.
bool isInternal(const Overload::Parameter& parameter) {
    return parameter.type.text.starts_with("_");
}

// An element of a texture other than float changes only the result.
bool isOfFloat(const clang::ClassTemplateSpecializationDecl& special) {
    const clang::TemplateArgument& first = special.getTemplateArgs()[0];
    return first.getKind() != clang::TemplateArgument::Type ||
           typeText(first.getAsType()).element.empty() ||
           typeText(first.getAsType()).text == "float";
}

Overload overloadOf(const clang::FunctionDecl& function, bool isTemplate) {
    Overload overload{.name = function.getNameAsString(),
                      .result = typeText(function.getReturnType()),
                      .parameters = {},
                      .isTemplate = isTemplate};
    for (const clang::ParmVarDecl* one : function.parameters())
        overload.parameters.push_back(
            {typeText(one->getType()), one->getNameAsString(), one->hasDefaultArg()});
    return overload;
}

class Reader : public clang::ASTConsumer {
  public:
    Reader(Listing& listing, std::string& instances) : listing(listing), instances(instances) {}

    void HandleTranslationUnit(clang::ASTContext& found) override {
        context = &found;
        read(*found.getTranslationUnitDecl());
    }

  private:
    Listing& listing;
    std::string& instances;
    clang::ASTContext* context = nullptr;

    bool isInInternalFile(const clang::Decl& declaration) const {
        const clang::SourceManager& sources = context->getSourceManager();
        const llvm::StringRef file =
            sources.getFilename(sources.getExpansionLoc(declaration.getLocation()));
        for (const std::string_view one : internalFiles)
            if (file.ends_with(one))
                return true;
        return false;
    }

    void read(const clang::DeclContext& space) {
        for (const clang::Decl* one : space.decls()) {
            if (const auto* linkage = llvm::dyn_cast<clang::LinkageSpecDecl>(one))
                read(*linkage);
            else if (const auto* named = llvm::dyn_cast<clang::NamedDecl>(one);
                     named != nullptr && !isInternal(*named))
                readName(*named);
        }
    }

    void readName(const clang::NamedDecl& named) {
        if (const auto* inner = llvm::dyn_cast<clang::NamespaceDecl>(&named)) {
            for (const std::string_view repeating : repeatingSpaces)
                if (inner->getNameAsString() == repeating)
                    return;
            return read(*inner);
        }
        const clang::NamedDecl& target = *named.getUnderlyingDecl(); // of a using-declaration
        if (isVector(target) ||
            std::ranges::find(internalTypes, target.getNameAsString()) != internalTypes.end())
            return;
        if (isInInternalFile(target) && !llvm::isa<clang::TypedefNameDecl>(target))
            return;
        if (const clang::FunctionDecl* function = target.getAsFunction())
            add("", *function, llvm::isa<clang::FunctionTemplateDecl>(target));
        else
            readType(target);
    }

    void readType(const clang::NamedDecl& named) {
        if (const auto* type = llvm::dyn_cast<clang::EnumDecl>(&named)) {
            note("", named, "type");
            for (const clang::EnumConstantDecl* one : type->enumerators())
                note(type->isScoped() ? type->getNameAsString() : "", *one,
                     type->isScoped() ? "enumerator" : "constant");
        } else if (const auto* special =
                       llvm::dyn_cast<clang::ClassTemplateSpecializationDecl>(&named)) {
            readMembers(special->getNameAsString(), *special);
        } else if (const auto* record = llvm::dyn_cast<clang::CXXRecordDecl>(&named)) {
            note("", named, "type");
            readMembers(record->getNameAsString(), *record);
        } else if (const auto* pattern = llvm::dyn_cast<clang::ClassTemplateDecl>(&named)) {
            note("", named, "type");
            instantiate(*pattern);
            for (const clang::ClassTemplateSpecializationDecl* one : pattern->specializations())
                if (isOfFloat(*one))
                    readMembers(pattern->getNameAsString(), *one);
        } else if (llvm::isa<clang::TypedefNameDecl>(named)) {
            note("", named, "type");
        }
    }

    void note(const std::string& owner, const clang::NamedDecl& named, const char* kind) {
        if (!isInternal(named))
            listing[{owner, named.getNameAsString()}].kind = kind;
    }

    void add(const std::string& owner, const clang::FunctionDecl& function, bool isTemplate) {
        if (isInternal(function))
            return;
        Overload overload = overloadOf(function, isTemplate);
        std::erase_if(overload.parameters, [](const Overload::Parameter& one) {
            return isInternal(one) && one.isOptional;
        });
        if (std::ranges::any_of(overload.parameters,
                                [](const Overload::Parameter& one) { return isInternal(one); }))
            return;
        ListedName& listed = listing[{owner, overload.name}];
        listed.kind = owner.empty() ? "function" : "member";
        listed.overloads.push_back(std::move(overload));
    }

    // Variables of internal base classes are not for programs.
    void readMembers(const std::string& owner, const clang::CXXRecordDecl& given) {
        const clang::CXXRecordDecl* record = given.getDefinition();
        if (record == nullptr)
            return;
        for (const clang::CXXBaseSpecifier& base : record->bases())
            if (const clang::CXXRecordDecl* type = base.getType()->getAsCXXRecordDecl())
                readMembers(owner, *type);
        for (const clang::Decl* one : record->decls()) {
            const auto* named = llvm::dyn_cast<clang::NamedDecl>(one);
            if (named == nullptr || one->getAccess() == clang::AS_private || isInternal(*named))
                continue;
            if (const auto* field = llvm::dyn_cast<clang::FieldDecl>(one)) {
                if (isInternal(*record) ||
                    std::ranges::find(representations, named->getNameAsString()) !=
                        representations.end())
                    continue;
                note(owner, *field, "member");
                listing[{owner, field->getNameAsString()}].type = typeText(field->getType()).text;
            } else if (const clang::FunctionDecl* method = one->getAsFunction();
                       method != nullptr && !llvm::isa<clang::CXXConstructorDecl>(method)) {
                add(owner, *method, llvm::isa<clang::FunctionTemplateDecl>(one));
            }
        }
    }

    // Declares variables of a template, so that the next reading finds its members with their
    // types.
    void instantiate(const clang::ClassTemplateDecl& pattern) {
        const clang::TemplateParameterList& parameters = *pattern.getTemplateParameters();
        bool hasAccess = false;
        for (unsigned index = 0; index < parameters.size(); ++index) {
            const auto* type =
                llvm::dyn_cast<clang::TemplateTypeParmDecl>(parameters.getParam(index));
            const auto* number =
                llvm::dyn_cast<clang::NonTypeTemplateParmDecl>(parameters.getParam(index));
            const bool isGiven = (type != nullptr && type->hasDefaultArgument()) ||
                                 (number != nullptr && number->hasDefaultArgument());
            if ((index == 0) != (type != nullptr && !isGiven) || (index > 0 && !isGiven))
                return;
            hasAccess |= number != nullptr && number->getType().getAsString().ends_with("access");
        }
        const std::string name = pattern.getQualifiedNameAsString();
        const std::string variable = " _of_" + pattern.getNameAsString();
        instances += name + "<float>" + variable + ";\n";
        if (hasAccess)
            instances += name + "<float, metal::access::read_write>" + variable + "_written;\n";
    }
};

class ReadingAction : public MetalAction {
  public:
    Listing listing;
    std::string instances;

  protected:
    std::unique_ptr<clang::ASTConsumer> CreateASTConsumer(clang::CompilerInstance&,
                                                          llvm::StringRef) override {
        return std::make_unique<Reader>(listing, instances);
    }
    // The constants of the library are macros.
    void EndSourceFileAction() override {
        clang::Preprocessor& text = getCompilerInstance().getPreprocessor();
        for (const auto& [name, state] : text.macros()) {
            const clang::MacroInfo* macro = state.getLatest()->getMacroInfo();
            if (macro == nullptr || macro->isFunctionLike() || macro->getNumTokens() == 0 ||
                isInternal(name->getName()))
                continue;
            const llvm::StringRef file = text.getSourceManager().getFilename(
                text.getSourceManager().getExpansionLoc(macro->getDefinitionLoc()));
            if (file.contains("functions/"))
                listing[{"", name->getName().str()}].kind = "constant";
        }
    }
};

// Some instances do not compile, a written depth texture for instance; they have no members.
bool read(ReadingAction& action, const std::string& instances, std::string& messages) {
    const std::string text = "#include <metal_stdlib>\n" + instances;
    llvm::IntrusiveRefCntPtr<llvm::vfs::InMemoryFileSystem> own = new llvm::vfs::InMemoryFileSystem;
    own->addFile(instancesFile, 0, llvm::MemoryBuffer::getMemBuffer(text, instancesFile, false));
    llvm::IntrusiveRefCntPtr<llvm::vfs::OverlayFileSystem> files =
        new llvm::vfs::OverlayFileSystem(fileSystem());
    files->pushOverlay(own);
    Compiler compiler(Compiler::Work::library, files, messages);
    compiler.clang().getDiagnosticOpts().ErrorLimit = 0;
    compiler.clang().getDiagnostics().setErrorLimit(0);
    const clang::InputKind kind(clang::Language::CXX);
    return compiler.execute(action, clang::FrontendInputFile(instancesFile, kind));
}

// A function such as sparse_sample passes its arguments on to sample, so its declaration has none
// of them.
void describeSparse(Listing& listing) {
    constexpr std::string_view prefix = "sparse_";
    for (auto& [key, listed] : listing) {
        const auto& [owner, name] = key;
        if (owner.empty() || !name.starts_with(prefix))
            continue;
        const auto plain = listing.find({owner, name.substr(prefix.size())});
        if (plain == listing.end())
            continue;
        listed.overloads = plain->second.overloads;
        for (Overload& overload : listed.overloads) {
            overload.name = name;
            overload.result = {.text = "sparse_color<" + overload.result.text + ">"};
        }
    }
}

} // namespace

Listing libraryListing() {
    std::string messages;
    ReadingAction first, second;
    if (!read(first, {}, messages))
        throw std::runtime_error("The standard library does not compile.\n" + messages);
    read(second, first.instances, messages);
    describeSparse(second.listing);
    for (const char* word : attributeWords())
        second.listing[{"[[", word}].kind = "attribute";
    return std::move(second.listing);
}

} // namespace tarnwick::msl
