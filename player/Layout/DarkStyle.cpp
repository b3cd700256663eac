#include "player/Layout/DarkStyle.h"

#include <QStyleOption>

namespace tarnwick::player {
namespace {

// Fusion derives the colour of a frame from that of the window.
template <class Option> Option withLightFrame(const Option& option) {
    Option changed = option;
    changed.palette.setColor(QPalette::Window,
                             option.palette.color(QPalette::Disabled, QPalette::Text));
    return changed;
}

} // namespace

void DarkStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                              QPainter* painter, const QWidget* widget) const {
    const bool isIndicator = element == PE_IndicatorCheckBox || element == PE_IndicatorRadioButton;
    const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
    const auto* field = qstyleoption_cast<const QStyleOptionFrame*>(option);
    if (isIndicator && button != nullptr) {
        const auto changed = withLightFrame(*button);
        QProxyStyle::drawPrimitive(element, &changed, painter, widget);
    } else if (element == PE_FrameLineEdit && field != nullptr) {
        const auto changed = withLightFrame(*field);
        QProxyStyle::drawPrimitive(element, &changed, painter, widget);
    } else {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}

} // namespace tarnwick::player
