#include "player/Keys/CurveShape.h"

#include <algorithm>
#include <cmath>

namespace tarnwick::player {
namespace {

using Key = KeyframeTracks::Key;

class CurveTrace {
  public:
    CurveTrace(const KeyframeTracks& tracks, const ParamDecl& param, const Axis& time)
        : tracks_(tracks), param_(param), time_(time), keys_(tracks.keys(param.name)) {}

    // From one pixel up to the next.
    void column(double left, double right) {
        point(left);
        const auto after = [](double wanted, const Key& key) { return wanted < key.time; };
        const auto from = std::upper_bound(keys_.begin(), keys_.end(), time_.at(left), after);
        const auto to = std::upper_bound(from, keys_.end(), time_.at(right), after);
        if (to - from > 4)
            extremes(left, {from, to});
        else
            for (const Key& key : std::span(from, to))
                corner(key);
    }
    void point(double x) { points.push_back({x, valueAt(time_.at(x))}); }

    std::vector<CurvePoint> points;

  private:
    float fit(float value) const { return std::clamp(value, param_.min, param_.max); }
    float valueAt(double time) const { return fit(*tracks_.value(param_.name, time)); }

    // A key, with the value of a hold that ends there.
    void corner(const Key& key) {
        const double x = time_.placeOf(key.time);
        points.push_back({x, valueAt(std::nextafter(key.time, -1))});
        points.push_back({x, fit(key.value)});
    }
    // Values between keys are between those of the keys.
    void extremes(double x, std::span<const Key> keys) {
        const auto [least, greatest] = std::ranges::minmax_element(keys, {}, &Key::value);
        points.push_back({x, fit(least->value)});
        points.push_back({x, fit(greatest->value)});
    }

    const KeyframeTracks& tracks_;
    const ParamDecl& param_;
    const Axis& time_;
    std::span<const Key> keys_;
};

} // namespace

std::vector<CurvePoint> curvePoints(const KeyframeTracks& tracks, const ParamDecl& param,
                                    float base, const Axis& time, const Range& pixels) {
    if (tracks.keys(param.name).empty())
        return {{pixels.from, base}, {pixels.to, base}};
    CurveTrace trace(tracks, param, time);
    double x = pixels.from;
    for (; x + 1 < pixels.to; x += 1)
        trace.column(x, x + 1);
    trace.column(x, pixels.to);
    trace.point(pixels.to);
    return std::move(trace.points);
}

} // namespace tarnwick::player
