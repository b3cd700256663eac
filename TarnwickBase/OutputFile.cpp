#include "TarnwickBase/OutputFile.h"

#include "TarnwickBase/WholeFile.h"

#include <string>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void refuse(const fs::path& file, const std::string& why) {
    throw OutputNameError(file.string() + " " + why);
}

void checkInputs(const fs::path& file, std::span<const std::string_view> inputs) {
    for (const std::string_view input : inputs) {
        std::error_code ignored; // `input` may name no file
        if (fs::equivalent(file, input, ignored))
            refuse(file, file.native() == input
                             ? "is the input file; the output needs another name."
                             : "and " + std::string(input) +
                                   " are the same file, an input; the output needs another name.");
    }
}

void checkReplaced(const fs::path& file, FileKind kind) {
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    if (!isReplaceable(kind) && fs::exists(fs::symlink_status(file, error)))
        refuse(file, "already exists and is not replaced.");
    if (!fs::exists(status))
        return;
    if (fs::is_directory(status))
        refuse(file, "is a folder and is not replaced.");
    if (!fs::is_regular_file(status))
        refuse(file, "is not a regular file and is not replaced.");
    if (fs::file_size(file, error) != 0 && !holds(kind, file))
        refuse(file, "already exists and is not replaced, because it is no " +
                         std::string(nameOf(kind)) + ".");
}

} // namespace

void checkOutputEnding(const fs::path& file, FileKind kind, std::string_view writer) {
    if (!endsAs(kind, file))
        throw OutputNameError(std::string(writer) + " writes files that end in " +
                              std::string(endingOf(kind)) + ", not \"" + file.string() + "\".");
}

void checkOutputFile(const fs::path& file, FileKind kind,
                     std::span<const std::string_view> inputs) {
    checkInputs(file, inputs);
    checkReplaced(file, kind);
    checkWholeFile(file);
}

} // namespace tarnwick
