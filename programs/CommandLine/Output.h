// The outputs of commands. Each file that may replace another is written here, so that no input and
// no file of another kind is replaced.
#pragma once

#include "TarnwickBase/FileKind.h"
#include "TarnwickCore/CommandLine/Arguments.h"

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

class Output {
  public:
    // The file that `option` names, or standard output for "-"; absent without the option. Make it
    // before any work, because it finds outputs that cannot be written. `writer` names what
    // requires the ending of the file name; default: `option`. Throws CommandError: misused if the
    // name has another ending, is an input, or is an existing file of another kind; failed if it
    // cannot be written.
    static std::optional<Output> of(const Arguments& arguments, std::string_view option,
                                    FileKind kind, std::string_view writer = {});
    // The same for -o, which the command requires.
    static Output required(const Arguments& arguments, FileKind kind, std::string_view writer = {});

    // The file of that name, unchecked; `inputs` are the names of the files that are read.
    static Output at(const std::filesystem::path& file, FileKind kind,
                     std::vector<std::string_view> inputs);
    // Throws CommandError if no file can be created at `path` at present.
    static void checkWritable(const std::filesystem::path& path);

    // Throws CommandError like of().
    void check() const;

    // "rose.mp4", "Standard output"
    const std::string& name() const { return name_; }
    bool isStandardOutput() const { return isStandardOutput_; }

    // Writes all of it: a file appears complete or not at all. Delays Ctrl-C. Throws CommandError.
    void write(std::string_view bytes) const;
    // The same for the data that `fill` writes to the given path, whose name is that of the output.
    // For standard output it is a temporary file. `fill` handles Ctrl-C.
    void writeWith(const std::function<void(const std::filesystem::path& place)>& fill) const;

    // Prints the command's other text on standard output, or on standard error if an output or the
    // document of --json goes to standard output.
    void say(std::string_view text) const;

  private:
    Output(std::string_view name, FileKind kind, std::vector<std::string_view> inputs);

    std::string name_;
    bool isStandardOutput_;
    bool saysOnStandardOutput_ = true;
    FileKind kind_;
    std::vector<std::string_view> inputs_;
};

} // namespace tarnwick
