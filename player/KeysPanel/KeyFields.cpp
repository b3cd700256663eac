#include "player/KeysPanel/KeyFields.h"

#include "player/KeysPanel/KeyWords.h"

#include <QComboBox>
#include <QDoubleSpinBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QSignalBlocker>
#include <QToolButton>
#include <array>
#include <cmath>

namespace tarnwick::player {
namespace {

struct EaseName {
    KeyframeTracks::Ease ease;
    const char* text;
};
constexpr std::array<EaseName, 3> easeNames{{
    {KeyframeTracks::Ease::linear, QT_TRANSLATE_NOOP("KeyFields", "Linear")},
    {KeyframeTracks::Ease::smooth, QT_TRANSLATE_NOOP("KeyFields", "Smooth")},
    {KeyframeTracks::Ease::hold, QT_TRANSLATE_NOOP("KeyFields", "Hold")},
}};
// A number that is being typed stays.
void showIn(QDoubleSpinBox& field, double value) {
    const double least = 0.5 * std::pow(10.0, -field.decimals());
    if (field.cleanText().isEmpty() || std::abs(field.value() - value) > least)
        field.setValue(value);
}

static_assert(easeNames.size() == KeyframeTracks::allEases.size());

} // namespace

KeyFields::KeyFields(KeysEditor& editor, KeysView& view) : editor_(editor), view_(view) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(6, 3, 6, 3);
    row->setSpacing(5);
    time_ = number(row, tr("Time"), tr("Time of the selected keys"),
                   tr("Time of the first selected key, in seconds"));
    value_ = number(row, tr("Value"), tr("Value of the selected keys"),
                    tr("Value of all selected keys"));
    length_ = number(row, tr("Length"), tr("Length of the selection"),
                     tr("Seconds from the first to the last selected key"));
    makeEase(row);
    count_ = new QLabel;
    count_->setMinimumWidth(1); // gives way in a narrow window
    row->addWidget(count_, 1);
    makeButtons(row);
    for (QDoubleSpinBox* seconds : {time_, length_}) {
        seconds->setDecimals(4);
        seconds->setRange(0, KeysView::longest);
        seconds->setSingleStep(1.0 / Transport::framesPerSecond);
        seconds->setSuffix(tr(" s"));
    }
    connect(time_, &QDoubleSpinBox::valueChanged, &editor_, &KeysEditor::setTime);
    connect(length_, &QDoubleSpinBox::valueChanged, &editor_, &KeysEditor::setLengthOfSelection);
    connect(value_, &QDoubleSpinBox::valueChanged, &editor_,
            [this](double value) { editor_.setValue(static_cast<float>(value)); });
    for (QDoubleSpinBox* field : {time_, value_, length_})
        connect(field, &QDoubleSpinBox::editingFinished, &editor_, &KeysEditor::endGesture);
    connect(&editor_, &KeysEditor::changed, this, &KeyFields::showState);
    connect(&view_, &KeysView::changed, this, &KeyFields::showView);
    showState();
    showView();
}

QDoubleSpinBox* KeyFields::number(QHBoxLayout* row, const QString& label, const QString& name,
                                  const QString& tip) {
    auto* title = new QLabel(label);
    auto* field = new QDoubleSpinBox;
    title->setBuddy(field);
    field->setAccessibleName(name);
    field->setToolTip(tip);
    field->setKeyboardTracking(false);
    field->setFixedWidth(fontMetrics().horizontalAdvance(QStringLiteral("00000.0000 s")) + 24);
    field->installEventFilter(this);
    row->addWidget(title);
    row->addWidget(field);
    return field;
}

void KeyFields::makeEase(QHBoxLayout* row) {
    ease_ = new QComboBox;
    ease_->setAccessibleName(tr("Ease of the selected keys"));
    ease_->setToolTip(tr("How the value moves to the next key (1, 2, 3)"));
    ease_->installEventFilter(this);
    for (const EaseName& one : easeNames)
        ease_->addItem(tr(one.text));
    connect(ease_, &QComboBox::activated, &editor_, [this](int index) {
        editor_.setEase(easeNames.at(static_cast<std::size_t>(index)).ease);
    });
    row->addWidget(ease_);
}

void KeyFields::makeButtons(QHBoxLayout* row) {
    auto* add =
        button(row, tr("Add key"), tr("Add a key of this parameter at the playhead (Insert)"));
    connect(add, &QToolButton::clicked, &editor_, [this] { editor_.addKey(); });
    auto* all = button(row, tr("All times"), tr("Show all times and values (0)"));
    connect(all, &QToolButton::clicked, this, &KeyFields::showAllWanted);
    auto* frame = button(row, tr("Zoom"), tr("Zoom to the selected keys (F)"));
    connect(frame, &QToolButton::clicked, this, &KeyFields::frameWanted);
    snap_ = toggle(row, tr("Snap"),
                   tr("Snap to frames, keys, the playhead and the loop (S; off "
                      "while Alt is held)"));
    connect(snap_, &QToolButton::clicked, &view_, &KeysView::setSnaps);
    follow_ = toggle(row, tr("Follow"), tr("Follow the playhead (Y)"));
    connect(follow_, &QToolButton::clicked, &view_, &KeysView::setFollows);
    sheet_ = toggle(row, tr("Sheet"), tr("Show the rows of the parameters"));
    curves_ = toggle(row, tr("Curves"), tr("Show the curves"));
    sheet_->setChecked(true);
    curves_->setChecked(true);
}

QToolButton* KeyFields::button(QHBoxLayout* row, const QString& text, const QString& tip) {
    auto* made = new QToolButton;
    made->setText(text);
    made->setToolTip(tip);
    made->setAccessibleName(text);
    made->setAutoRaise(true);
    row->addWidget(made);
    return made;
}

QToolButton* KeyFields::toggle(QHBoxLayout* row, const QString& text, const QString& tip) {
    QToolButton* made = button(row, text, tip);
    made->setCheckable(true);
    return made;
}

void KeyFields::enterTime() {
    if (!time_->isEnabled())
        return;
    time_->setFocus(Qt::ShortcutFocusReason);
    time_->selectAll();
}

bool KeyFields::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
        if (auto* field = qobject_cast<QDoubleSpinBox*>(watched)) {
            const QSignalBlocker blocker(field);
            field->setValue(field->value()); // drops what was typed
        }
        emit left();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void KeyFields::showView() {
    snap_->setChecked(view_.snaps());
    follow_->setChecked(view_.follows());
}

void KeyFields::showState() {
    const QSignalBlocker time(time_), value(value_), length(length_), ease(ease_);
    const KeySelection& selection = editor_.selection();
    count_->setText(countText(selection));
    const auto span = selection.span();
    time_->setEnabled(span.has_value());
    value_->setEnabled(span.has_value());
    ease_->setEnabled(span.has_value());
    length_->setEnabled(span && span->length() > 0);
    if (!span) {
        for (QDoubleSpinBox* field : {time_, value_, length_})
            field->clear();
        ease_->setCurrentIndex(-1);
        return;
    }
    showIn(*time_, span->from);
    showIn(*length_, span->length());
    const auto& focus = editor_.focus();
    const KeyPlace shown =
        focus && selection.contains(focus->name, focus->time)
            ? *focus
            : KeyPlace{selection.times().begin()->first, selection.times().begin()->second.front()};
    const ParamDecl* param = editor_.param(shown.name);
    const KeyframeTracks::Key* key = keyAt(editor_.keys(), shown.name, shown.time);
    if (param == nullptr || key == nullptr)
        return;
    value_->setDecimals(decimalsOf(*param) + 1);
    value_->setRange(param->min, param->max);
    value_->setSingleStep((static_cast<double>(param->max) - param->min) / 100);
    showIn(*value_, key->value);
    ease_->setCurrentIndex(-1); // of different ones
    for (std::size_t index = 0; index < easeNames.size(); ++index)
        if (easeNames[index].ease == commonEase(editor_.keys(), selection))
            ease_->setCurrentIndex(static_cast<int>(index));
}

} // namespace tarnwick::player
