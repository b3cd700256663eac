#include "TarnwickPlatform/Pictures/JPEG.h"

#include "TarnwickBase/Precondition.h"

#include <csetjmp>
#include <cstdio> // jpeglib.h needs it
#include <cstdlib>
#include <jpeglib.h>

namespace tarnwick {
namespace {

constexpr int fullColorQuality = 90;

// The library reports an error by a call that must not return.
struct ErrorExit : jpeg_error_mgr {
    std::jmp_buf escape;
};

void escape(j_common_ptr codec) {
    std::longjmp(static_cast<ErrorExit*>(codec->err)->escape, 1);
}

struct Compressed {
    unsigned char* bytes = nullptr; // of malloc
    unsigned long size = 0;
    ~Compressed() { std::free(bytes); }
};

void describe(jpeg_compress_struct& codec, const Picture& picture, int quality) {
    codec.image_width = picture.width;
    codec.image_height = picture.height;
    codec.input_components = 4;
    codec.in_color_space = JCS_EXT_BGRX;
    jpeg_set_defaults(&codec);
    jpeg_set_quality(&codec, quality, TRUE);
    if (quality >= fullColorQuality)
        codec.comp_info[0].h_samp_factor = codec.comp_info[0].v_samp_factor = 1;
    codec.optimize_coding = TRUE;
}

// Has no object with a destructor, which a jump would skip. Frees the library's memory.
bool compress(const Picture& picture, int quality, Compressed& result) {
    jpeg_compress_struct codec{};
    ErrorExit failures{};
    codec.err = jpeg_std_error(&failures);
    failures.error_exit = escape;
    failures.output_message = [](j_common_ptr) {};
    if (setjmp(failures.escape) != 0) { // NOLINT: the library's only way to report errors
        jpeg_destroy_compress(&codec);
        return false;
    }
    jpeg_create_compress(&codec);
    jpeg_mem_dest(&codec, &result.bytes, &result.size);
    describe(codec, picture, quality);
    jpeg_start_compress(&codec, TRUE);
    while (codec.next_scanline < codec.image_height) {
        const std::uint8_t* row = &picture.bytes[codec.next_scanline * picture.bytesPerRow];
        JSAMPROW rows = const_cast<JSAMPROW>(row); // only read
        jpeg_write_scanlines(&codec, &rows, 1);
    }
    jpeg_finish_compress(&codec);
    jpeg_destroy_compress(&codec);
    return true;
}

} // namespace

std::string jpegOf(const Picture& picture, int quality) {
    precondition(picture.bytesPerRow >= std::size_t{4} * picture.width &&
                     picture.bytes.size() >= picture.bytesPerRow * picture.height,
                 "a picture's bytes hold all of its rows", "width", picture.width, "height",
                 picture.height, "bytes per row", picture.bytesPerRow, "bytes",
                 picture.bytes.size());
    Compressed result;
    if (!compress(picture, quality, result))
        return "";
    return {reinterpret_cast<const char*>(result.bytes), result.size};
}

} // namespace tarnwick
