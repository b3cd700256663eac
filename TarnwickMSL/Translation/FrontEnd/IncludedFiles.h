// The files that a program may include: those of the library, and those in the folders that the
// host names.
#pragma once

#include "TarnwickMSL/IncludeFolder.h"

#include <clang/Lex/PPCallbacks.h>
#include <llvm/Support/VirtualFileSystem.h>

#include <memory>
#include <string>
#include <vector>

namespace clang {
class Preprocessor;
} // namespace clang

namespace tarnwick::msl {

// A file has the name of its folder as the host spells it, a slash, and its path below that folder.
// It is there if it is a regular file of at most 8 MiB that is really below the folder: not when
// ".." or a link leads elsewhere. The real path of the folder itself may have links.
class IncludedFiles : public llvm::vfs::ProxyFileSystem {
  public:
    IncludedFiles(llvm::IntrusiveRefCntPtr<llvm::vfs::FileSystem> library,
                  const std::vector<IncludeFolder>& folders);

    // The names by which Clang searches the folders.
    std::vector<std::string> folderNames() const;
    // The names of the files that were read, each once, in order.
    const std::vector<std::string>& read() const { return read_; }
    // Whether a file was refused since the last call of forgetRefused.
    bool hasRefused() const { return hasRefused_; }
    void forgetRefused() { hasRefused_ = false; }

    llvm::ErrorOr<llvm::vfs::Status> status(const llvm::Twine& path) override;
    bool exists(const llvm::Twine& path) override;
    llvm::ErrorOr<std::unique_ptr<llvm::vfs::File>>
    openFileForRead(const llvm::Twine& path) override;
    std::error_code getRealPath(const llvm::Twine& path,
                                llvm::SmallVectorImpl<char>& output) override;

  private:
    struct Folder {
        std::string name; // ends with a slash
        std::string path; // real, ends with a slash
    };
    std::vector<Folder> folders;
    std::vector<std::string> read_;
    bool hasRefused_ = false;

    llvm::ErrorOr<std::string> realPath(llvm::StringRef path);
};

// Reports an #include of a file that the folders' border refuses. Clang would say that there is no
// such file.
void reportRefusals(clang::Preprocessor& preprocessor, IncludedFiles& files);

} // namespace tarnwick::msl
