#include "player/ControlPanel/TargetBox.h"

#include <QSignalBlocker>
#include <algorithm>
#include <vector>

namespace tarnwick::player {
namespace {

constexpr int sliders = 16; // that are listed

std::vector<ControlTarget> commonTargets() {
    std::vector<ControlTarget> targets;
    for (int number = 1; number <= sliders; ++number)
        targets.emplace_back(SliderTarget{number});
    for (const CaseName<TransportAction>& action : transportNames())
        targets.emplace_back(action.one);
    return targets;
}

} // namespace

TargetBox::TargetBox(QWidget* parent) : QComboBox(parent) {
    setEditable(true);
    setInsertPolicy(QComboBox::NoInsert);
    setAccessibleName(tr("What the control moves"));
    setParams({});
}

void TargetBox::setParams(std::span<const ParamDecl> params) {
    const QSignalBlocker block(this);
    const QString text = currentText();
    clear();
    for (const ParamDecl& param : params)
        addItem(QString::fromStdString(param.name));
    if (count() > 0)
        insertSeparator(count());
    for (const ControlTarget& target : commonTargets())
        addItem(QString::fromStdString(labelOf(target)));
    if (text.isEmpty())
        setCurrentIndex(0);
    else
        setCurrentText(text);
}

void TargetBox::setTarget(const ControlTarget& target) {
    setCurrentText(QString::fromStdString(labelOf(target)));
}

ControlTarget TargetBox::target() const {
    const std::string text = currentText().trimmed().toStdString();
    const auto common = commonTargets();
    const auto found = std::ranges::find_if(
        common, [&](const ControlTarget& target) { return labelOf(target) == text; });
    return found == common.end() ? ControlTarget(ParameterTarget{text}) : *found;
}

} // namespace tarnwick::player
