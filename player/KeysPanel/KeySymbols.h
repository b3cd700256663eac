// The symbols of keys: a diamond is linear, a disc smooth, a square hold.
#pragma once

#include "TarnwickCore/Animation/KeyframeTracks.h"

#include <QColor>
#include <QPainter>
#include <QPixmap>
#include <cstdint>
#include <map>
#include <tuple>

namespace tarnwick::player {

enum class KeyLook : std::uint8_t { plain, selected, focused, selectedAndFocused };

// Each symbol is drawn once for a colour and a resolution.
class KeySymbols {
  public:
    static constexpr double radius = 5.5; // pixels
    static constexpr double reach = 8;    // pixels from the middle in which a press hits

    // With the middle at `place`.
    void draw(QPainter& painter, const QPointF& place, KeyframeTracks::Ease ease, KeyLook look,
              const QColor& color);
    void clear() { made_.clear(); } // after a change of the palette

  private:
    using Name = std::tuple<KeyframeTracks::Ease, KeyLook, QRgb, int>;
    std::map<Name, QPixmap> made_;
};

} // namespace tarnwick::player
