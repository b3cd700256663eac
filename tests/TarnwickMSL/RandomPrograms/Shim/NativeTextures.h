// Metal's textures for the native compiler: texels are the numbers of NumberedTextures.h, samplers
// choose the nearest one, and a texture that is written has a texel for each input.
#pragma once

#include "tests/TarnwickMSL/RandomPrograms/Shim/NativeVectors.h"

namespace tarnwick::trials::native {

namespace coord {
enum Coord { normalized, pixel };
}
namespace filter {
enum Filter { nearest };
}
namespace mip_filter {
enum MipFilter { nearest };
}
namespace address {
enum Address { clamp_to_edge, repeat, mirrored_repeat, clamp_to_zero };
}
struct sampler {
    coord::Coord coordinates = coord::normalized;
    address::Address outside = address::clamp_to_edge;
    template <class... States> constexpr sampler(States... states) { (set(states), ...); }
    constexpr void set(coord::Coord state) { coordinates = state; }
    constexpr void set(address::Address state) { outside = state; }
    constexpr void set(filter::Filter) {}
    constexpr void set(mip_filter::MipFilter) {}

    // The texel at a coordinate in a level of that size; -1 outside, where the value is zero. Pixel
    // coordinates count texels of the first level.
    int texel(float at, int size, int mip = 0) const {
        const float texels = coordinates == coord::pixel ? at / float(1 << mip) : at * float(size);
        const int i = static_cast<int>(std::floor(texels));
        const int period = ((i % (2 * size)) + 2 * size) % (2 * size);
        switch (outside) {
        case address::repeat:
            return period % size;
        case address::mirrored_repeat:
            return period < size ? period : 2 * size - 1 - period;
        case address::clamp_to_zero:
            return i < 0 || i >= size ? -1 : i;
        case address::clamp_to_edge:
            break;
        }
        return std::clamp(i, 0, size - 1);
    }
};
struct level {
    float number = 0;
    explicit level(float number) : number(number) {}
};

template <class T> Vec<T, 4> numbered(int x, int y, int slice, int mip) {
    if (x < 0 || y < 0 || slice < 0)
        return {};
    const int number = 1 + x + 10 * y + 100 * slice + 2000 * mip;
    return Vec<T, 4>::made([&](int lane) { return static_cast<T>(number + lane); });
}

template <class T, int width> struct Line {
    Vec<T, 4> read(uint x) const { return numbered<T>(int(x), 0, 0, 0); }
    Vec<T, 4> sample(const sampler& by, float x) const {
        return numbered<T>(by.texel(x, width), 0, 0, 0);
    }
    uint get_width() const { return width; }
};
template <class T, int width, int size> struct Lines {
    Vec<T, 4> read(uint x, uint slice) const { return numbered<T>(int(x), 0, int(slice), 0); }
    uint get_width() const { return width; }
    uint get_array_size() const { return size; }
};
template <class T, int width, int height, int levels> struct Picture {
    Vec<T, 4> read(const Vec<uint, 2>& at, uint mip = 0) const {
        return numbered<T>(int(at.x), int(at.y), 0, int(mip));
    }
    Vec<T, 4> sample(const sampler& by, const Vec<float, 2>& at, level mip = level(0)) const {
        const int from = int(mip.number);
        return numbered<T>(by.texel(at.x, width >> from, from),
                           by.texel(at.y, height >> from, from), 0, from);
    }
    uint get_width(uint mip = 0) const { return width >> mip; }
    uint get_height(uint mip = 0) const { return height >> mip; }
    uint get_num_mip_levels() const { return levels; }
};
template <class T, int width, int height, int size> struct Sheets {
    Vec<T, 4> read(const Vec<uint, 2>& at, uint slice) const {
        return numbered<T>(int(at.x), int(at.y), int(slice), 0);
    }
    Vec<T, 4> sample(const sampler& by, const Vec<float, 2>& at, uint slice) const {
        return numbered<T>(by.texel(at.x, width), by.texel(at.y, height), int(slice), 0);
    }
    uint get_width() const { return width; }
    uint get_array_size() const { return size; }
};
template <class T, int width, int height, int depth> struct Solid {
    Vec<T, 4> read(const Vec<uint, 3>& at) const {
        return numbered<T>(int(at.x), int(at.y), int(at.z), 0);
    }
    Vec<T, 4> sample(const sampler& by, const Vec<float, 3>& at) const {
        return numbered<T>(by.texel(at.x, width), by.texel(at.y, height), by.texel(at.z, depth), 0);
    }
    uint get_depth() const { return depth; }
};
// The texel of one input; the others of it are not accessed.
struct Board {
    Vec<uint, 4>* texel;
    Vec<uint, 4> read(const Vec<uint, 2>&) const { return *texel; }
    void write(const Vec<uint, 4>& value, const Vec<uint, 2>&) const { *texel = value; }
    void fence() const {}
};

struct World {
    Vec<uint, 4>* memory;
    const uint* words;
    Line<uint, 16> line;
    Picture<float, 8, 4, 3> picture;
    Sheets<half, 4, 4, 3> sheets;
    Solid<int, 4, 4, 4> solid;
    Lines<ushort, 8, 2> lines;
    Board board;
    Vec<uint, 2> place;
};

} // namespace tarnwick::trials::native
