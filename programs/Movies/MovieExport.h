// Movies that commands write.
#pragma once

#include "TarnwickRender/Channels/PerformedSources.h"
#include "TarnwickRender/VideoExporter.h"
#include "programs/Movies/ExportOptions.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

namespace tarnwick {

// The inputs of a movie's segments: the sound of the file, or the program's own without one, and
// the channels. Null for a program without Inputs. Throws CommandError.
std::shared_ptr<FrameInputs> frameInputsOf(const std::shared_ptr<const ShaderProgram>& program,
                                           gpu::Device& device, const ExportPreset& preset,
                                           const ChannelSources& channels = {},
                                           const std::filesystem::path& soundFile = {});

// The inputs of a performance. Null for a program without Inputs. Throws CommandError.
std::shared_ptr<FrameInputs> performedInputsOf(const std::shared_ptr<const ShaderProgram>& program,
                                               gpu::Device& device, const ExportPreset& preset,
                                               std::vector<PerformedSource> sources);

// Exports the segments to the target, then prints frames, length, size and duration. Prints
// progress on standard error; Ctrl-C cancels. `path` is the name of the episode in messages. Throws
// CommandError.
void exportMovie(std::span<const ExportSegment> segments, const MovieTarget& target,
                 gpu::Device& device, std::string_view path, ExportDetails details = {});
// The same to `file`, of which a part may remain after an error. Returns the number of frames.
std::int64_t exportMovieFile(std::span<const ExportSegment> segments, const ExportPreset& preset,
                             gpu::Device& device, const std::filesystem::path& file,
                             std::string_view path, ExportDetails details = {});

} // namespace tarnwick
