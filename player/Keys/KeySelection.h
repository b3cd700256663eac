// A set of keys of the parameters, by name and time.
#pragma once

#include "TarnwickCore/Animation/KeyframeTracks.h"
#include "TarnwickCore/Params.h"

#include <cstddef>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick::player {

// Both ends are inside.
struct Range {
    double from = 0, to = 0; // from <= to

    bool operator==(const Range&) const = default;
    double length() const { return to - from; }
    bool contains(double value) const { return value >= from && value <= to; }
};

struct KeyPlace {
    std::string name; // of the parameter
    double time = 0;  // seconds

    bool operator==(const KeyPlace&) const = default;
};

// Whether both times are those of one key.
bool isSameTime(double a, double b);
// The key of a parameter at a time; null without one. Valid until the tracks change.
const KeyframeTracks::Key* keyAt(const KeyframeTracks& tracks, std::string_view name, double time);

class KeySelection {
  public:
    using Times = std::map<std::string, std::vector<double>, std::less<>>;

    bool operator==(const KeySelection&) const = default;

    bool contains(std::string_view name, double time) const;
    void add(const KeyPlace& key);
    void remove(const KeyPlace& key);
    void toggle(const KeyPlace& key);
    void add(const KeySelection& other);

    // By name of the parameter, ascending, none empty.
    const Times& times() const { return times_; }
    bool isEmpty() const { return times_.empty(); }
    std::size_t count() const;
    std::optional<Range> span() const; // from the first to the last key; absent if empty

  private:
    Times times_;
};

// The ease of all selected keys; absent if they differ or none is selected.
std::optional<KeyframeTracks::Ease> commonEase(const KeyframeTracks& tracks,
                                               const KeySelection& selection);
// The keys of the declared parameters in a range of time.
KeySelection keysIn(const KeyframeTracks& tracks, std::span<const ParamDecl> params,
                    const Range& time);
KeySelection everyKey(const KeyframeTracks& tracks, std::span<const ParamDecl> params);
// Those of the selection that the tracks and the parameters have.
KeySelection existing(const KeySelection& selection, const KeyframeTracks& tracks,
                      std::span<const ParamDecl> params);

} // namespace tarnwick::player
