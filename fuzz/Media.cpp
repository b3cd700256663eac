// Files that a person chooses as pictures, movies and sounds of an episode, and parts of movies.
#include "TarnwickBase/TemporaryFolder.h"
#include "TarnwickPlatform/Media/LoopedMedia.h"
#include "TarnwickPlatform/Movie/FirstPicture.h"
#include "TarnwickPlatform/Movie/JoinMovies.h"
#include "TarnwickPlatform/Movie/Reading/SoundFile.h"
#include "TarnwickPlatform/Pictures/PNG.h"
#include "fuzz/Input.h"
#include "fuzz/Law.h"

#include <cmath>
#include <fstream>

using namespace tarnwick;
using namespace tarnwick::fuzz;

namespace {

constexpr std::uint32_t longestSide = 64;

void checkPicture(const Picture& picture, std::uint32_t longest) {
    law(picture.width > 0 && picture.height > 0, "a picture has pixels");
    law(picture.width <= longest && picture.height <= longest, "a picture is within its limit");
    law(picture.bytesPerRow >= std::size_t{4} * picture.width &&
            picture.bytes.size() >= picture.bytesPerRow * picture.height,
        "a picture's bytes hold all of its rows");
}

void readStill(const std::filesystem::path& file) {
    try {
        const Picture picture = readPNG(file);
        checkPicture(picture, ~0u);
        std::ofstream(file, std::ios::binary) << pngOf(picture);
        law(readPNG(file) == picture, "a written picture reads back equal");
    } catch (const PictureError&) {
    }
}

void readMovie(const std::filesystem::path& file) {
    try {
        const auto reader = MediaReader::openFile(file, {.longestSide = longestSide});
        if (const auto length = reader->duration())
            law(*length > 0 && std::isfinite(*length), "a duration is a time");
        Picture picture;
        for (int frame = 0; frame < 4 && reader->next(); ++frame) {
            reader->readPicture(picture);
            checkPicture(picture, longestSide);
            law(std::isfinite(reader->time()), "a frame has a time");
            law(reader->frameDuration() > 0, "a frame is shown");
        }
        reader->seek(0.5);
        reader->nextTime();
    } catch (const MediaError&) {
    }
}

// The same time gives the same picture, whatever was shown before.
void loopMovie(const std::filesystem::path& file) {
    try {
        int calls = 0;
        const auto isEnd = [&calls] { return ++calls > 10000; };
        const auto media = LoopedMedia::open(file, isEnd);
        Picture first, again;
        media->goTo(0.25);
        media->readPicture(first);
        media->goTo(0.75);
        media->goTo(0);
        media->goTo(0.25);
        media->readPicture(again);
        law(first == again, "the same time gives the same picture");
    } catch (const MediaError&) {
    }
}

void readSound(const std::filesystem::path& file) {
    try {
        const auto sound = SoundFile::open(file);
        law(sound->length() >= 0, "a sound has a length");
        const std::vector<float> samples = sound->read(0, 4800);
        law(samples.size() % 2 == 0 && samples.size() <= 9600, "samples are stereo");
        const std::vector<float> later = sound->read(2400, 480);
        law(later.size() <= 960, "no more samples than wanted");
    } catch (const MovieError&) {
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static const TemporaryFolder folder;
    const std::filesystem::path file = folder.path() / "input";
    const auto write = [&] { std::ofstream(file, std::ios::binary) << textOf(bytes, size); };
    write();
    readMovie(file);
    loopMovie(file);
    readSound(file);
    if (const auto picture = firstPictureOf(file, longestSide))
        checkPicture(*picture, longestSide);
    try {
        joinMovies({&file, 1}, folder.path() / "joined.mp4", MovieFileType::mpeg4);
    } catch (const MovieError&) {
    }
    readStill(file); // last: it writes the file
    return 0;
}
