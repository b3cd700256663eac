#include "TarnwickPlatform/Movie/JoinMovies.h"

#include "TarnwickPlatform/Movie/Files/MovieFile.h"
#include "TarnwickPlatform/Movie/Files/MoviePart.h"
#include "TarnwickPlatform/Movie/MovieError.h"

#include <algorithm>
#include <optional>

namespace tarnwick {

namespace {

namespace fs = std::filesystem;

// The name of a property in which a part differs from the first one; null if all agree.
const char* difference(const MoviePart& first, const MoviePart& part) {
    const VideoSettings wanted = first.video();
    const VideoSettings found = part.video();
    if (found.codec != wanted.codec)
        return "codec";
    if (found.width != wanted.width || found.height != wanted.height)
        return "size";
    if (found.framesPerSecond != wanted.framesPerSecond)
        return "frame rate";
    return part.configuration() == first.configuration() ? nullptr : "encoder's parameters";
}

[[noreturn]] void refuse(const std::string& sentence) {
    throw MovieError(sentence, MovieError::Kind::parts);
}

void checkFits(const MoviePart& first, const MoviePart& part, std::int64_t nextFrame) {
    if (const char* what = difference(first, part))
        refuse(part.path().string() + " differs from " + first.path().string() + " in its " + what +
               ".");
    if (part.firstFrame() != nextFrame)
        refuse(part.path().string() + " begins at frame " + std::to_string(part.firstFrame()) +
               ", not at frame " + std::to_string(nextFrame) +
               (nextFrame == 0 ? "." : ", where the part before it ends."));
}

// Called before anything is written.
void checkParts(std::span<const fs::path> parts) {
    if (parts.empty())
        refuse("There are no parts to join.");
    const MoviePart first(parts.front(), MoviePart::Track::video);
    std::int64_t frames = 0;
    for (const fs::path& path : parts) {
        const MoviePart part(path, MoviePart::Track::video);
        checkFits(first, part, frames);
        frames += part.frameCount();
    }
}

void checkIsNoPart(const fs::path& output, std::span<const fs::path> parts) {
    std::error_code ignored;
    for (const fs::path& part : parts)
        if (fs::equivalent(part, output, ignored))
            refuse(output.string() + " is one of the parts that are to be joined.");
}

// Makes a sentence of the words of an error in writing.
template <typename Work> void writing(const fs::path& output, Work work) {
    try {
        work();
    } catch (const MovieError& error) {
        throw MovieError(output.string() + " cannot be written: " + error.what() + ".");
    }
}

// A joined movie being written: pictures of all parts, sound of the first.
class Joining {
  public:
    Joining(const fs::path& firstPart, const fs::path& output, MovieFileType type);

    void add(MoviePart part);
    void finish();

  private:
    void writeSoundUntil(std::optional<double> seconds);

    const fs::path output;
    MoviePart first; // its sound
    std::optional<MovieFile> file;
    std::optional<SoundPacket> sound;
    std::int64_t frames = 0;
};

Joining::Joining(const fs::path& firstPart, const fs::path& output, MovieFileType type)
    : output(output), first(firstPart, MoviePart::Track::sound) {
    writing(output, [&] {
        file.emplace(output, type);
        file->addVideo(first.video(), first.configuration(), first.delay());
        if (first.hasSound())
            file->addSound(first.sound(), first.soundFormat());
        file->begin(0);
    });
    sound = first.nextSound();
}

void Joining::add(MoviePart part) {
    const auto rate = static_cast<double>(first.video().framesPerSecond);
    while (const std::optional<VideoPacket> picture = part.nextPicture()) {
        writeSoundUntil(static_cast<double>(frames++) / rate);
        writing(output, [&] { file->write(*picture); });
    }
}

void Joining::writeSoundUntil(std::optional<double> seconds) {
    const auto rate = sound ? static_cast<double>(first.sound().sampleRate) : 1.0;
    while (sound && (!seconds || static_cast<double>(sound->sample) / rate <= *seconds)) {
        writing(output, [&] { file->write(*sound); });
        sound = first.nextSound();
    }
}

void Joining::finish() {
    writeSoundUntil(std::nullopt);
    writing(output, [&] { file->finish(first.chapters()); });
}

} // namespace

void joinMovies(std::span<const fs::path> parts, const fs::path& output, MovieFileType type) {
    checkIsNoPart(output, parts);
    checkParts(parts);
    Joining joining(parts.front(), output, type);
    for (const fs::path& part : parts)
        joining.add(MoviePart(part, MoviePart::Track::video));
    joining.finish();
}

} // namespace tarnwick
