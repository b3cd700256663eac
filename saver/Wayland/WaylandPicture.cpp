#include "saver/Wayland/WaylandPicture.h"

#include <sys/mman.h>

#include <cstdint>
#include <unistd.h>

namespace tarnwick {

std::unique_ptr<WaylandPicture> WaylandPicture::make(wl_shm* memory, const Picture& picture) {
    const int file = memfd_create("tarnwick-saver", MFD_CLOEXEC);
    if (file < 0)
        return nullptr;
    std::unique_ptr<WaylandPicture> made;
    if (write(file, picture.bytes.data(), picture.bytes.size()) ==
        static_cast<ssize_t>(picture.bytes.size())) {
        wl_shm_pool* pool =
            wl_shm_create_pool(memory, file, static_cast<std::int32_t>(picture.bytes.size()));
        made.reset(new WaylandPicture(wl_shm_pool_create_buffer(
            pool, 0, static_cast<std::int32_t>(picture.width),
            static_cast<std::int32_t>(picture.height),
            static_cast<std::int32_t>(picture.bytesPerRow), WL_SHM_FORMAT_XRGB8888)));
        wl_shm_pool_destroy(pool);
    }
    close(file);
    return made;
}

WaylandPicture::~WaylandPicture() {
    wl_buffer_destroy(buffer_);
}

} // namespace tarnwick
