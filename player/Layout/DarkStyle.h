// The style of the dark themes.
#pragma once

#include <QProxyStyle>

namespace tarnwick::player {

// Fusion, whose frames of check boxes, radio buttons, fields, lists to choose from and sliders are
// darker than the window and would not be seen on a dark one.
class DarkStyle : public QProxyStyle {
    Q_OBJECT

  public:
    DarkStyle() : QProxyStyle(QStringLiteral("fusion")) {}

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                            QPainter* painter, const QWidget* widget) const override;
};

} // namespace tarnwick::player
