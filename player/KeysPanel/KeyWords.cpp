#include "player/KeysPanel/KeyWords.h"

#include <algorithm>
#include <cmath>

namespace tarnwick::player {

QString timeText(double time) {
    const auto hundredths = static_cast<qint64>(std::floor(time * 100 + 1e-6));
    return QStringLiteral("%1:%2.%3 f %4")
        .arg(hundredths / 6000)
        .arg(hundredths / 100 % 60, 2, 10, QLatin1Char('0'))
        .arg(hundredths % 100, 2, 10, QLatin1Char('0'))
        .arg(Transport::frameOf(time));
}

int decimalsOf(const ParamDecl& param) {
    const double span = static_cast<double>(param.max) - param.min;
    const double wanted = 3 - std::floor(std::log10(span));
    return std::isfinite(wanted) ? static_cast<int>(std::clamp(wanted, 0.0, 7.0)) : 3;
}

QString valueText(const ParamDecl& param, float value) {
    return QString::number(static_cast<double>(value), 'f', decimalsOf(param));
}

QString descriptionOfFocus(const KeysEditor& editor) {
    const auto& focus = editor.focus();
    const ParamDecl* param = focus ? editor.param(focus->name) : nullptr;
    const KeyframeTracks::Key* key =
        param != nullptr ? keyAt(editor.keys(), focus->name, focus->time) : nullptr;
    if (key == nullptr)
        return KeysEditor::tr("No key has the focus; the arrow keys go to one.");
    const auto track = editor.keys().keys(focus->name);
    const auto ease = rawValue(key->ease);
    return KeysEditor::tr("%1, key %2 of %3, %4, value %5, %6%7")
        .arg(QString::fromStdString(focus->name))
        .arg(key - track.data() + 1)
        .arg(track.size())
        .arg(timeText(key->time), valueText(*param, key->value),
             QString::fromUtf8(ease.data(), static_cast<qsizetype>(ease.size())),
             editor.selection().contains(focus->name, focus->time) ? KeysEditor::tr(", selected")
                                                                   : QString());
}

QString countText(const KeySelection& selection) {
    const auto keys = static_cast<int>(selection.count());
    const auto params = static_cast<int>(selection.times().size());
    if (keys == 0)
        return KeysEditor::tr("No key selected");
    if (keys == 1)
        return KeysEditor::tr("1 key of %1")
            .arg(QString::fromStdString(selection.times().begin()->first));
    return params == 1 ? KeysEditor::tr("%1 keys of %2")
                             .arg(keys)
                             .arg(QString::fromStdString(selection.times().begin()->first))
                       : KeysEditor::tr("%1 keys of %2 parameters").arg(keys).arg(params);
}

} // namespace tarnwick::player
