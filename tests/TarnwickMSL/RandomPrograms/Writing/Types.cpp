#include "tests/TarnwickMSL/RandomPrograms/Writing/Types.h"

namespace tarnwick::trials {

static const char* scalarName(Kind kind) {
    switch (kind) {
    case Kind::unsigned_:
        return "uint";
    case Kind::signed_:
        return "int";
    case Kind::float_:
        return "float";
    case Kind::half_:
        return "half";
    case Kind::ushort_:
        return "ushort";
    case Kind::ulong_:
        return "ulong";
    case Kind::uchar_:
        return "uchar";
    case Kind::char_:
        return "char";
    case Kind::short_:
        return "short";
    case Kind::long_:
        return "long";
    }
    return "";
}

std::string typeName(Type type) {
    return scalarName(type.kind) + (type.isMatrix() ? std::to_string(type.columns) + "x" : "") +
           (type.isScalar() ? "" : std::to_string(type.lanes));
}

std::string spaceName(Space space) {
    switch (space) {
    case Space::thread:
        return "thread ";
    case Space::device:
        return "device ";
    case Space::threadgroup:
        return "threadgroup ";
    case Space::constant:
        return "constant ";
    }
    return "";
}

std::vector<std::string> swizzlesOf(std::uint32_t lanes) {
    if (lanes == 2)
        return {"xy", "yx", "xx", "yy", "xyx", "yyx", "xyxy"};
    if (lanes == 3)
        return {"xy", "yx", "zx", "yz", "zz", "yzx", "zxy", "zyx", "xxy", "xyzx"};
    return {"xy", "zw", "wx", "yx", "ww", "xyz", "wzy", "yzw", "yzwx", "wzyx", "zwxy", "xxww"};
}

} // namespace tarnwick::trials
