#include "TarnwickRender/Channels/FileChannel.h"

#include "TarnwickRender/FrameInputs.h"

namespace tarnwick {
namespace {

std::unique_ptr<LoopedMedia> opened(const std::filesystem::path& file) {
    try {
        return LoopedMedia::open(file);
    } catch (const MediaError& error) {
        throw InputError(error.what());
    }
}

} // namespace

FileChannel::FileChannel(const std::filesystem::path& file, gpu::Device& device)
    : file_(file), device_(device), media_(opened(file)) {}

const gpu::Texture* FileChannel::at(double time) {
    if (read(time) && !texture_.show(picture_, device_))
        throw InputError(device_.info().name + " has no room for the pictures of " +
                         file_.string() + ".");
    return texture_.texture();
}

// Returns whether there is another picture.
bool FileChannel::read(double time) {
    try {
        const bool isMoved = media_->goTo(time);
        if (isMoved)
            media_->readPicture(picture_);
        return isMoved;
    } catch (const MediaError& error) {
        throw InputError(error.what());
    }
}

} // namespace tarnwick
