// tarnwick join: puts the parts of a movie together.
#include "TarnwickBase/EndSignals.h"
#include "TarnwickPlatform/Movie/JoinMovies.h"
#include "TarnwickPlatform/Movie/MovieError.h"
#include "programs/CommandLine/Output.h"
#include "programs/Commands/Command.h"
#include "programs/Terminal/ProgressBar.h"

#include <array>
#include <vector>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

// From the ending of the output's name, or for standard output of the first part's name.
MovieFileType typeOf(const Arguments& arguments) {
    const std::string_view out = arguments.value("-o").value();
    const std::string_view named = out == "-" ? arguments.operands().front() : out;
    for (const MovieFileType type : {MovieFileType::mpeg4, MovieFileType::quickTime})
        if (endsAs(fileKind(type), named))
            return type;
    misuse("A movie's name ends in .mp4 or .mov, not as " + quoted(named) + " does.");
}

// Parts are looked at before anything is written.
void joinInto(const fs::path& file, std::span<const fs::path> parts, MovieFileType type) {
    try {
        joinMovies(parts, file, type);
    } catch (const MovieError& error) {
        if (error.kind == MovieError::Kind::parts)
            misuse(error.what());
        failure(error.what());
    }
}

Status join(const Arguments& arguments) {
    const MovieFileType type = typeOf(arguments);
    const Output out = Output::required(arguments, fileKind(type));
    const std::vector<fs::path> parts(arguments.operands().begin(), arguments.operands().end());
    const HeldSignals whileWriting;
    ProgressBar bar("");
    bar.doing("Joining " + std::to_string(parts.size()) + " parts");
    out.writeWith([&](const fs::path& file) { joinInto(file, parts, type); });
    return Status::done;
}

constexpr std::array<Option, 1> joinOptions{{
    {.name = "-o",
     .value = "OUT",
     .help = "the movie, .mp4 or .mov; - is standard output",
     .values = FileName{},
     .isRequired = true},
}};

} // namespace

const Command joinCommand{.name = "join",
                          .operands = "PART...",
                          .summary = "Joins the parts of a movie without encoding again.",
                          .options = joinOptions,
                          .run = join};

} // namespace tarnwick
