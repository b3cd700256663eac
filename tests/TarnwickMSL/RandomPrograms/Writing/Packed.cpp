// Packed vectors.
#include "tests/TarnwickMSL/RandomPrograms/Writing/Generator.h"

namespace tarnwick::trials {

void Generator::declarePacked() {
    const Kind kind = anyKind();
    const Type type{kind == Kind::ulong_ ? Kind::float_ : kind, 2 + below(3)};
    const std::string name = fresh("p"), packed = "packed_" + typeName(type);
    line(packed + " " + name + " = " + packed + "(" + tamed(type, 2) + ");");
    scope_.packed.push_back({name, type, true});
}

void Generator::assignPacked(const Variable& packed) {
    if (!packed.writable)
        return stir();
    const Type type = packed.type;
    if (chance(40))
        return line(lane(packed.name, type.lanes) + " = " + tamed(type.kind, 2) + ";");
    line(packed.name + " = packed_" + typeName(type) + "(" + tamed(type, 2) + ");");
}

} // namespace tarnwick::trials
