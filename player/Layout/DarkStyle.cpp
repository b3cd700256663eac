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

void DarkStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                   QPainter* painter, const QWidget* widget) const {
    const auto drawn = [&](const auto* own) {
        if (own == nullptr)
            return false;
        const auto changed = withLightFrame(*own);
        QProxyStyle::drawComplexControl(control, &changed, painter, widget);
        return true;
    };
    const bool isDrawn =
        (control == CC_SpinBox && drawn(qstyleoption_cast<const QStyleOptionSpinBox*>(option))) ||
        (control == CC_ComboBox && drawn(qstyleoption_cast<const QStyleOptionComboBox*>(option))) ||
        (control == CC_Slider && drawn(qstyleoption_cast<const QStyleOptionSlider*>(option)));
    if (!isDrawn)
        QProxyStyle::drawComplexControl(control, option, painter, widget);
}

} // namespace tarnwick::player
