#include "TarnwickMSL/Translation/FrontEnd/Compiler.h"

#include "TarnwickMSL/Translation/FrontEnd/Attributes.h"
#include "TarnwickMSL/Translation/FrontEnd/LibraryText.h"
#include "TarnwickMSL/Translation/FrontEnd/MetalTarget.h"
#include "TarnwickMSL/Translation/FrontEnd/Warnings.h"

#include <clang/Basic/Stack.h>
#include <clang/Frontend/CompilerInvocation.h>
#include <clang/Lex/PreprocessorOptions.h>

namespace tarnwick::msl {

// The other headers of the standard library. Each includes metal_stdlib, which has everything.
static constexpr const char* otherHeaders[] = {
    "metal_math",         "metal_common",    "metal_geometric",       "metal_relational",
    "metal_integer",      "metal_matrix",    "metal_texture",         "metal_atomic",
    "metal_compute",      "metal_graphics",  "metal_types",           "metal_pack",
    "metal_array",        "metal_simdgroup", "metal_limits",          "metal_numeric",
    "metal_assert",       "metal_config",    "metal_extended_vector", "metal_packed_vector",
    "metal_type_traits",  "metal_utility",   "metal_quadgroup",       "metal_stdlib.h",
    "metal_tessellation", "metal_logging",   "metal_raytracing",      "metal_mesh",
    "metal_uniform",      "initializer_list"};

FileSystem fileSystem(std::string_view precompiled) {
    llvm::IntrusiveRefCntPtr<llvm::vfs::InMemoryFileSystem> files =
        new llvm::vfs::InMemoryFileSystem;
    auto add = [&](const std::string& path, std::string_view text) {
        files->addFile(path, 0, llvm::MemoryBuffer::getMemBuffer(text, path, false));
    };
    for (const LibraryFile& file : libraryFiles())
        add(std::string(libraryFolder) + std::string(file.name), file.text);
    for (const char* header : otherHeaders)
        add(std::string(libraryFolder) + header, "#include <metal_stdlib>\n");
    add(std::string(libraryFolder) + "simd/simd.h",
        "#include <metal_stdlib>\n#include <types/simd.h>\n");
    add(prefixFile, "#include <metal_stdlib>\n");
    if (!precompiled.empty())
        add(precompiledFile, precompiled);
    return files;
}

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
            "-fexperimental-strict-floating-point", // otherwise Clang ignores float_control
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
            "-Wno-bitfield-width", // an error here (Rules.cpp)
            "-Wno-ignored-attributes",
            "-Wno-undefined-internal",
            "-Wno-undefined-inline",
            "-Wno-unused-value",
            "-Wno-literal-conversion",
            "-Wno-pragma-once-outside-header",
            "-Wno-c23-extensions",         // #embed is an error here
            "-disable-pragma-debug-crash", // `#pragma clang __debug crash`
            "-D__METAL__=1",
            "-D__METAL_VERSION__=310",
            "-DMETAL_INTERNAL_STD_VERSION=310",
            "-D__HAVE_NATIVE_DOUBLE__=0"};
}

Compiler::Compiler(Work work, FileSystem files, std::string& text, std::string moreWarningsIn,
                   const std::vector<std::string>& folders)
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
    for (const std::string& folder : folders)
        options.insert(options.end(), {"-I", folder.c_str()});
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

// Clang has made the target of the triple, and nothing yet that depends on it.
bool MetalAction::BeginInvocation(clang::CompilerInstance& instance) {
    useMetalTarget(instance);
    return true;
}

bool Compiler::execute(clang::FrontendAction& action, clang::FrontendInputFile input) {
    instance.getFrontendOpts().Inputs = {std::move(input)};
    return instance.ExecuteAction(action);
}

bool Compiler::begin(clang::FrontendAction& action, const clang::FrontendInputFile& input) {
    clang::noteBottomOfStack(); // Clang leaves deep recursion before the stack ends
    return instance.createTarget() && action.BeginSourceFile(instance, input);
}

void Compiler::nextProgram(bool keepsPlaces) {
    instance.getDiagnostics().Reset(true);
    messages.nextProgram(instance.getLangOpts(), instance.getPreprocessor());
    instance.getCodeGenOpts().setDebugInfo(keepsPlaces ? llvm::codegenoptions::LocTrackingOnly
                                                       : llvm::codegenoptions::NoDebugInfo);
}

// As clang::CompilerInstance writes it.
void Compiler::endProgram() {
    messages.endProgram();
    const unsigned warnings = messages.getNumWarnings(), errors = messages.getNumErrors();
    if (warnings)
        out << warnings << " warning" << (warnings == 1 ? "" : "s");
    if (warnings && errors)
        out << " and ";
    if (errors)
        out << errors << " error" << (errors == 1 ? "" : "s");
    if (warnings || errors)
        out << " generated.\n";
}

} // namespace tarnwick::msl
