#include "player/Panels/ParametersPanel.h"

#include <QDoubleSpinBox>
#include <QGridLayout>
#include <QLabel>
#include <QScrollArea>
#include <QSignalBlocker>
#include <QSlider>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

namespace tarnwick::player {
namespace {

constexpr int sliderSteps = 1000;
constexpr int decimals = 3;

int stepOf(const ParamDecl& param, float value) {
    const double share = (value - param.min) / (static_cast<double>(param.max) - param.min);
    return std::isfinite(share)
               ? static_cast<int>(std::lround(std::clamp(share, 0.0, 1.0) * sliderSteps))
               : 0;
}

double valueOf(const ParamDecl& param, int step) {
    return param.min + (static_cast<double>(param.max) - param.min) * step / sliderSteps;
}

} // namespace

ParametersPanel::ParametersPanel(Player& player, QWidget* parent)
    : QWidget(parent), player_(player) {
    auto* content = new QWidget;
    list_ = new QVBoxLayout(content);
    list_->setContentsMargins(8, 8, 8, 8);
    empty_ = new QLabel(tr("A line \"// @param name default min max description\" in the text "
                           "makes a slider here."));
    empty_->setWordWrap(true);
    list_->addWidget(empty_);
    list_->addStretch(1);
    auto* scroll = new QScrollArea;
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidget(content);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(scroll);
    connect(&player_, &Player::activeChanged, this, &ParametersPanel::follow);
    connect(&player_, &Player::newsArrived, this, [this] {
        if (document_ != nullptr && !document_->document().settings().keys.isEmpty())
            showValues();
    });
    follow();
}

void ParametersPanel::follow() {
    if (document_ != nullptr)
        document_->disconnect(this);
    document_ = player_.active();
    if (document_ != nullptr) {
        connect(document_, &OpenDocument::textChanged, this, &ParametersPanel::rebuild);
        connect(document_, &OpenDocument::settingsChanged, this, &ParametersPanel::showValues);
    }
    params_.clear();
    rebuild();
}

void ParametersPanel::rebuild() {
    const std::vector<ParamDecl> params =
        document_ != nullptr ? document_->document().episode()->params() : std::vector<ParamDecl>{};
    if (params == params_ && rows_.size() == params.size()) {
        showValues();
        return;
    }
    params_ = params;
    rows_.clear();
    while (list_->count() > 2) { // the hint and the stretch remain
        QLayoutItem* item = list_->takeAt(1);
        delete item->widget();
        delete item;
    }
    for (const ParamDecl& param : params_)
        addRow(param);
    empty_->setVisible(params_.empty());
    showValues();
}

void ParametersPanel::addRow(const ParamDecl& param) {
    auto* box = new QWidget;
    auto* grid = new QGridLayout(box);
    grid->setContentsMargins(0, 0, 0, 6);
    grid->setVerticalSpacing(2);
    const QString name = QString::fromStdString(param.name);
    const QString detail = QString::fromStdString(param.detail);
    auto* label = new QLabel(name);
    label->setToolTip(detail);
    QFont bold = label->font();
    bold.setBold(true);
    label->setFont(bold);
    auto* description = new QLabel(detail);
    description->setForegroundRole(QPalette::PlaceholderText);
    description->setMinimumWidth(20);
    auto* slider = new QSlider(Qt::Horizontal);
    slider->setRange(0, sliderSteps);
    slider->setAccessibleName(name);
    slider->setAccessibleDescription(detail);
    auto* entry = new QDoubleSpinBox;
    entry->setDecimals(decimals);
    entry->setRange(param.min, param.max);
    entry->setSingleStep((static_cast<double>(param.max) - param.min) / 100);
    entry->setKeyboardTracking(false);
    entry->setAccessibleName(tr("Value of %1").arg(name));
    auto* key = new QToolButton;
    key->setText(QStringLiteral("\u25C6"));
    key->setCheckable(true);
    key->setToolTip(tr("Key at the present time"));
    key->setAccessibleName(tr("Key of %1").arg(name));
    auto* reset = new QToolButton;
    reset->setText(QStringLiteral("\u21BA"));
    reset->setToolTip(tr("Default value, without keys"));
    reset->setAccessibleName(tr("Reset %1").arg(name));
    grid->addWidget(label, 0, 0);
    grid->addWidget(description, 0, 1, 1, 4);
    grid->addWidget(slider, 1, 0, 1, 2);
    grid->addWidget(entry, 1, 2);
    grid->addWidget(key, 1, 3);
    grid->addWidget(reset, 1, 4);
    grid->setColumnStretch(1, 1);
    list_->insertWidget(list_->count() - 1, box);
    const Row row{param, slider, entry, key, reset};
    rows_.push_back(row);
    connect(slider, &QSlider::valueChanged, this,
            [this, row](int step) { set(row, valueOf(row.param, step)); });
    connect(slider, &QSlider::sliderReleased, this, [this] {
        if (document_ != nullptr)
            document_->endGesture();
    });
    connect(entry, &QDoubleSpinBox::valueChanged, this,
            [this, row](double value) { set(row, value); });
    connect(key, &QToolButton::clicked, this, [this, row] { toggleKey(row); });
    connect(reset, &QToolButton::clicked, this, [this, row] {
        if (document_ != nullptr)
            document_->resetValue(row.param.name);
    });
}

void ParametersPanel::set(const Row& row, double value) {
    if (document_ != nullptr && !isShowing_)
        document_->setValue(row.param.name, static_cast<float>(value));
}

// Adds a key at the present time, or removes the one that is there.
void ParametersPanel::toggleKey(const Row& row) {
    if (document_ == nullptr)
        return;
    Settings settings = document_->document().settings();
    const double time = document_->time();
    const auto keys = settings.keys.keys(row.param.name);
    const bool isThere = std::ranges::any_of(keys, [&](const KeyframeTracks::Key& key) {
        return std::abs(key.time - time) < KeyframeTracks::snap;
    });
    if (isThere)
        settings.keys.remove(row.param.name, time);
    else
        settings.keys.set(row.param.name, time, document_->document().valueAt(row.param, time));
    document_->setSettings(std::move(settings),
                           (isThere ? "Remove key of " : "Add key of ") + row.param.name);
}

void ParametersPanel::showValues() {
    if (document_ == nullptr)
        return;
    isShowing_ = true;
    const double time = document_->time();
    const Document& document = document_->document();
    for (const Row& row : rows_) {
        const float value = document_->valueNow(row.param);
        if (!row.slider->isSliderDown())
            row.slider->setValue(stepOf(row.param, value));
        if (!row.entry->hasFocus() || row.slider->isSliderDown())
            row.entry->setValue(value);
        const auto keys = document.settings().keys.keys(row.param.name);
        row.key->setChecked(std::ranges::any_of(keys, [&](const KeyframeTracks::Key& key) {
            return std::abs(key.time - time) < KeyframeTracks::snap;
        }));
        row.reset->setEnabled(document.settings().values.contains(row.param.name) || !keys.empty());
    }
    isShowing_ = false;
}

} // namespace tarnwick::player
