// tarnwick join: puts the parts of a movie together.
#include "TarnwickBase/WholeFile.h"
#include "TarnwickPlatform/Movie/JoinMovies.h"
#include "TarnwickPlatform/Movie/MovieError.h"
#include "programs/Command.h"
#include "programs/ExportOptions.h"
#include "programs/HeldSignals.h"

#include <array>
#include <vector>

namespace tarnwick {
namespace {

MovieFileType fileTypeOf(std::string_view out) {
    const std::string ending = std::filesystem::path(out).extension();
    if (ending == ".mov")
        return MovieFileType::quickTime;
    if (ending != ".mp4")
        misuse("A movie's name ends in .mp4 or .mov, not as " + quoted(out) + " does.");
    return MovieFileType::mpeg4;
}

// Parts are looked at before anything is written.
void joinInto(const UnfinishedFile& file, std::span<const std::filesystem::path> parts,
              MovieFileType type) {
    try {
        joinMovies(parts, file.path(), type);
    } catch (const MovieError& error) {
        if (!std::filesystem::exists(file.path()))
            misuse(error.what());
        failure(error.what());
    }
}

Status join(const Arguments& arguments) {
    const std::filesystem::path out = movieNameOf(arguments);
    if (arguments.operands().empty())
        misuse("The parts are missing.");
    const MovieFileType type = fileTypeOf(out.native());
    checkMovieName(out.native());
    const std::vector<std::filesystem::path> parts(arguments.operands().begin(),
                                                   arguments.operands().end());
    std::error_code ignored; // of what is not there
    for (const std::filesystem::path& part : parts)
        if (std::filesystem::equivalent(part, out, ignored))
            misuse(out.string() + " is one of the parts.");
    const HeldSignals whileWriting;
    try {
        UnfinishedFile file(out);
        joinInto(file, parts, type);
        file.finish();
    } catch (const WholeFileError& error) {
        failure(error.what());
    }
    return Status::done;
}

constexpr std::array<Option, 1> joinOptions{{
    {"-o", "OUT", "where to write the movie; always wanted"},
}};

} // namespace

const Command joinCommand{.name = "join",
                          .operands = "PART...",
                          .summary = "Puts the parts of a movie together, without encoding again.",
                          .options = joinOptions,
                          .run = join};

} // namespace tarnwick
