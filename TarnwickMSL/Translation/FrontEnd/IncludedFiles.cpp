#include "TarnwickMSL/Translation/FrontEnd/IncludedFiles.h"

#include "TarnwickMSL/Translation/FrontEnd/LibraryText.h"
#include "TarnwickMSL/Translation/FrontEnd/Messages.h"

#include <clang/Lex/Preprocessor.h>
#include <llvm/Support/FileSystem.h>

#include <algorithm>
#include <filesystem>

namespace tarnwick::msl {
namespace {

namespace vfs = llvm::vfs;

constexpr std::uint64_t longestFile = 8u << 20; // bytes, as of a source

std::error_code missing() {
    return std::make_error_code(std::errc::no_such_file_or_directory);
}

std::string withSlash(std::string path) {
    if (!path.ends_with('/'))
        path += '/';
    return path;
}

// Whether a file that does not exist would be in the folder: no link on the way leads out of it, or
// nowhere.
bool wouldBeInside(const std::string& folder, const std::string& rest) {
    namespace fs = std::filesystem;
    for (fs::path known(folder + rest); known.native().size() > folder.size();
         known = known.parent_path()) {
        std::error_code error;
        if (fs::is_symlink(known, error) && !fs::exists(known, error))
            return false;
        llvm::SmallString<256> real;
        if (!llvm::sys::fs::real_path(known.native(), real))
            return llvm::StringRef(withSlash(real.str().str())).starts_with(folder);
    }
    return true;
}

// The library's files are at /metal. A folder there keeps its name with a dot, which makes it
// another name of the same folder.
std::string distinct(std::string name) {
    return isLibraryFile(withSlash(name)) ? "/." + name : name;
}

class Refusals : public clang::PPCallbacks {
  public:
    Refusals(clang::DiagnosticsEngine& diagnostics, IncludedFiles& files)
        : diagnostics(diagnostics), files(files) {}

    // True: Clang goes on without its message.
    bool FileNotFound(llvm::StringRef) override { return files.hasRefused(); }

    void InclusionDirective(clang::SourceLocation, const clang::Token&, llvm::StringRef name, bool,
                            clang::CharSourceRange place, clang::OptionalFileEntryRef file,
                            llvm::StringRef, llvm::StringRef, const clang::Module*, bool,
                            clang::SrcMgr::CharacteristicKind) override {
        if (!file && files.hasRefused())
            reportError(diagnostics, place.getBegin(), "'%0' is outside the folders of includes",
                        name);
        files.forgetRefused();
    }

    void HasInclude(clang::SourceLocation, llvm::StringRef, bool, clang::OptionalFileEntryRef,
                    clang::SrcMgr::CharacteristicKind) override {
        files.forgetRefused();
    }

  private:
    clang::DiagnosticsEngine& diagnostics;
    IncludedFiles& files;
};

} // namespace

IncludedFiles::IncludedFiles(llvm::IntrusiveRefCntPtr<vfs::FileSystem> library,
                             const std::vector<IncludeFolder>& given)
    : ProxyFileSystem(std::move(library)) {
    for (const IncludeFolder& folder : given) {
        llvm::SmallString<256> real;
        if (!llvm::sys::fs::real_path(folder.path, real))
            folders.push_back(
                {withSlash(distinct(folder.name)), withSlash(std::string(real.str()))});
    }
}

std::vector<std::string> IncludedFiles::folderNames() const {
    std::vector<std::string> names;
    for (const Folder& folder : folders)
        names.push_back(folder.name.size() > 1 ? folder.name.substr(0, folder.name.size() - 1)
                                               : folder.name);
    return names;
}

// The real path of a file or folder below one of the folders, or of the folder itself. What is
// outside is refused whether it exists or not, so that no program learns about other files.
llvm::ErrorOr<std::string> IncludedFiles::realPath(llvm::StringRef path) {
    const std::string whole = withSlash(path.str());
    bool isInside = false, isOutside = false;
    for (const Folder& folder : folders) {
        if (!llvm::StringRef(whole).starts_with(folder.name))
            continue;
        const std::string rest =
            path.size() > folder.name.size() ? path.substr(folder.name.size()).str() : "";
        const std::string normal = std::filesystem::path(rest).lexically_normal().string();
        const bool leaves = normal == ".." || normal.starts_with("../");
        llvm::SmallString<256> real;
        if (leaves || llvm::sys::fs::real_path(folder.path + rest, real)) {
            (leaves || !wouldBeInside(folder.path, rest) ? isOutside : isInside) = true;
            continue;
        }
        if (llvm::StringRef(withSlash(real.str().str())).starts_with(folder.path))
            return real.str().str();
        isOutside = true;
    }
    const bool isElsewhere = path.starts_with("/") && !isLibraryFile(path.str());
    hasRefused_ = hasRefused_ || isOutside || (!isInside && isElsewhere);
    return missing();
}

llvm::ErrorOr<vfs::Status> IncludedFiles::status(const llvm::Twine& path) {
    if (auto known = ProxyFileSystem::status(path))
        return known;
    const std::string name = path.str();
    const auto real = realPath(name);
    if (!real)
        return real.getError();
    const auto found = vfs::getRealFileSystem()->status(*real);
    if (!found)
        return found.getError();
    const bool isFile = found->isRegularFile() && found->getSize() <= longestFile;
    if (!isFile && !found->isDirectory())
        return missing();
    return vfs::Status::copyWithNewName(*found, name);
}

bool IncludedFiles::exists(const llvm::Twine& path) {
    return static_cast<bool>(status(path));
}

llvm::ErrorOr<std::unique_ptr<vfs::File>> IncludedFiles::openFileForRead(const llvm::Twine& path) {
    if (auto known = ProxyFileSystem::openFileForRead(path))
        return known;
    const std::string name = path.str();
    const auto found = status(name);
    if (!found)
        return found.getError();
    if (!found->isRegularFile())
        return missing();
    const auto real = realPath(name);
    if (!real)
        return real.getError();
    auto file = vfs::File::getWithPath(vfs::getRealFileSystem()->openFileForRead(*real), name);
    if (file && std::ranges::find(read_, name) == read_.end())
        read_.push_back(name);
    return file;
}

std::error_code IncludedFiles::getRealPath(const llvm::Twine& path,
                                           llvm::SmallVectorImpl<char>& output) {
    if (!ProxyFileSystem::getRealPath(path, output))
        return {};
    const auto real = realPath(path.str());
    if (!real)
        return real.getError();
    output.assign(real->begin(), real->end());
    return {};
}

void reportRefusals(clang::Preprocessor& preprocessor, IncludedFiles& files) {
    preprocessor.addPPCallbacks(std::make_unique<Refusals>(preprocessor.getDiagnostics(), files));
}

} // namespace tarnwick::msl
