// A choice of what a control moves: a parameter, a slider by its place, an action of the transport.
#pragma once

#include "player/Control/Binding.h"

#include <QComboBox>

namespace tarnwick::player {

// Parameters of other episodes can be typed.
class TargetBox : public QComboBox {
    Q_OBJECT

  public:
    explicit TargetBox(QWidget* parent = nullptr);

    // Lists these parameters; the choice stays.
    void setParams(std::span<const ParamDecl> params);
    void setTarget(const ControlTarget& target);
    ControlTarget target() const;
};

} // namespace tarnwick::player
