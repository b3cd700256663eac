// Where a command writes: every file that takes another's place goes through here, so that none
// takes that of an input or of something that is no such file.
#pragma once

#include "TarnwickBase/FileKind.h"
#include "programs/CommandLine/Arguments.h"

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

class Output {
  public:
    // What `option` names, or with "-" standard output; absent without that option. To be made
    // before any work, as it is where an output that cannot be written is found. `writer` is who
    // decides how the name ends: `option` itself where it is empty. Throws CommandError: misused
    // for a name that ends otherwise, is one of the words beside it that name files, or has
    // something of another kind standing there; failed where it cannot be written.
    static std::optional<Output> of(const Arguments& arguments, std::string_view option,
                                    FileKind kind, std::string_view writer = {});
    // The same of -o, without which the command is misused.
    static Output wanted(const Arguments& arguments, FileKind kind, std::string_view writer = {});

    // The file of that name, unchecked; `inputs` are the names of files that are read.
    static Output at(const std::filesystem::path& file, FileKind kind,
                     std::vector<std::string_view> inputs);
    // Throws CommandError where nothing can come to stand at `path` as things are now.
    static void checkWritable(const std::filesystem::path& path);

    // Throws CommandError where of() does.
    void check() const;

    // "rose.mp4", "Standard output"
    const std::string& name() const { return name_; }
    bool isStandardOutput() const { return isStandardOutput_; }

    // Writes all of it: a file appears whole or not at all. Keeps Ctrl-C waiting meanwhile. Throws
    // CommandError.
    void write(std::string_view bytes) const;
    // The same of what `fill` writes to the place that it is given, which has the output's name.
    // For standard output that lies among the temporary files. Ctrl-C is left to `fill`.
    void writeWith(const std::function<void(const std::filesystem::path& place)>& fill) const;

    // What the command says besides what it writes: on standard output, or on standard error where
    // this file, another one or --json's document goes there.
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
