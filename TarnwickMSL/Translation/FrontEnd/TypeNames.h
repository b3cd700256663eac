// The names that a program gives to vector types: template parameters and aliases. The meaning of a
// name depends on its place.
#pragma once

#include <clang/Basic/IdentifierTable.h>
#include <llvm/ADT/DenseMap.h>
#include <llvm/ADT/SmallVector.h>

#include <cstddef>
#include <cstdint>

namespace tarnwick::msl {

enum class NameKind : std::uint8_t {
    other,     // not a vector type: a variable hides a type of the same name
    type,      // `T`, and `Colour` of `using Colour = float4`
    template_, // `V` of `template <class T> using V = vec<T, 3>`
    deduced    // `D` of `using D = decltype(v)`
};

class TypeNames {
  public:
    // Valid for the tokens [first, end). A later declaration hides an earlier one.
    void declare(const clang::IdentifierInfo* name, NameKind kind, std::size_t first,
                 std::size_t end) {
        known[name].push_back({kind, first, end});
    }
    NameKind kindAt(const clang::IdentifierInfo* name, std::size_t token) const {
        const auto found = known.find(name);
        if (found != known.end())
            for (const Meaning& meaning : llvm::reverse(found->second))
                if (meaning.first <= token && token < meaning.end)
                    return meaning.kind;
        return NameKind::other;
    }
    bool isKnown(const clang::IdentifierInfo* name) const { return known.contains(name); }

  private:
    struct Meaning {
        NameKind kind;
        std::size_t first, end;
    };
    llvm::DenseMap<const clang::IdentifierInfo*, llvm::SmallVector<Meaning, 1>> known;
};

} // namespace tarnwick::msl
