// Texts of times and keys.
#pragma once

#include "player/KeysPanel/KeysEditor.h"

#include <QString>

namespace tarnwick::player {

QString timeText(double time); // "0:02.50 f 150"
// Digits after the point for a thousandth of the range.
int decimalsOf(const ParamDecl& param);
QString valueText(const ParamDecl& param, float value);
// "speed, key 3 of 7, 0:02.50 f 150, value 0.400, smooth, selected"; else how to reach one.
QString descriptionOfFocus(const KeysEditor& editor);
QString countText(const KeySelection& selection); // "3 keys of 2 parameters"

} // namespace tarnwick::player
