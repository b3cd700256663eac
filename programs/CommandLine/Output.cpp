#include "programs/CommandLine/Output.h"

#include "TarnwickBase/EndSignals.h"
#include "TarnwickBase/OutputFile.h"
#include "TarnwickBase/WholeFile.h"
#include "programs/CommandLine/CommandError.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <unistd.h>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view standardOutput = "-";

// Turns the errors of libraries into those of commands. The user chose the name, so an error in it
// is a usage error.
template <class Work> void reported(const Work& work) {
    try {
        work();
    } catch (const OutputNameError& error) {
        misuse(error.what());
    } catch (const WholeFileError& error) {
        failure(error.what());
    } catch (const TemporaryFolderError& error) {
        failure(error.what());
    }
}

void printFile(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    std::array<char, 1 << 16> block{};
    while (stream.read(block.data(), block.size()) || stream.gcount() > 0)
        print({block.data(), static_cast<std::size_t>(stream.gcount())});
    if (stream.bad() || !stream.eof())
        failure(file.string() + " cannot be read: " + std::strerror(errno) + ".");
}

} // namespace

std::optional<Output> Output::of(const Arguments& arguments, std::string_view option, FileKind kind,
                                 std::string_view writer) {
    const auto name = arguments.value(option);
    if (!name)
        return std::nullopt;
    Output output(*name, kind, arguments.wordsBeside(option));
    output.saysOnStandardOutput_ = !output.isStandardOutput_ && !arguments.has("--json") &&
                                   std::ranges::count(output.inputs_, standardOutput) == 0;
    if (!output.isStandardOutput_)
        reported([&] { checkOutputEnding(*name, kind, writer.empty() ? option : writer); });
    output.check();
    return output;
}

Output Output::required(const Arguments& arguments, FileKind kind, std::string_view writer) {
    return of(arguments, "-o", kind, writer).value();
}

Output Output::at(const fs::path& file, FileKind kind, std::vector<std::string_view> inputs) {
    Output output(file.native(), kind, std::move(inputs));
    output.isStandardOutput_ = false;
    output.name_ = file.native();
    return output;
}

void Output::checkWritable(const fs::path& path) {
    reported([&] { checkWholeFile(path); });
}

Output::Output(std::string_view name, FileKind kind, std::vector<std::string_view> inputs)
    : name_(name == standardOutput ? "Standard output" : name),
      isStandardOutput_(name == standardOutput), kind_(kind), inputs_(std::move(inputs)) {}

void Output::check() const {
    if (!isStandardOutput_)
        reported([&] { checkOutputFile(name_, kind_, inputs_); });
    else if (isatty(STDOUT_FILENO) == 1)
        misuse("Standard output is a terminal, which cannot show a " + std::string(nameOf(kind_)) +
               "; use a file or a pipe.");
}

void Output::write(std::string_view bytes) const {
    if (isStandardOutput_)
        return print(bytes);
    const HeldSignals whileWriting;
    check();
    reported([&] { writeWholeFile(name_, bytes); });
}

void Output::writeWith(const std::function<void(const fs::path& place)>& fill) const {
    reported([&] {
        if (isStandardOutput_) {
            const TemporaryFolder folder;
            const fs::path place = folder.path() / ("output" + std::string(endingOf(kind_)));
            fill(place);
            return printFile(place);
        }
        UnfinishedFile file(name_);
        fill(file.path());
        check();
        file.finish();
    });
}

void Output::say(std::string_view text) const {
    if (!saysOnStandardOutput_)
        std::fwrite(text.data(), 1, text.size(), stderr);
    else
        print(text);
}

} // namespace tarnwick
