#include "player/ControlPanel/BindingsView.h"

#include "player/ControlPanel/BindingForm.h"
#include "player/ControlPanel/TargetBox.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QSignalBlocker>
#include <QSplitter>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

namespace tarnwick::player {
namespace {

QString rangeText(const Binding& binding) {
    return QStringLiteral("%1 \u2013 %2 %")
        .arg(std::lround(binding.output[0] * 100))
        .arg(std::lround(binding.output[1] * 100));
}

template <typename Case> QString labelOf(std::span<const CaseName<Case>> names, Case one) {
    const auto found = std::ranges::find(names, one, &CaseName<Case>::one);
    return QString::fromUtf8(found->label.data(), static_cast<int>(found->label.size()));
}

QStringList texts(const Binding& binding) {
    const bool isParameter = !std::holds_alternative<TransportAction>(binding.target);
    return {QString::fromStdString(tarnwick::player::labelOf(binding.source)),
            QString::fromStdString(tarnwick::player::labelOf(binding.target)),
            binding.episode.empty() ? QObject::tr("Every episode")
                                    : QString::fromStdString(binding.episode),
            rangeText(binding),
            isRelative(binding) ? QObject::tr("Steps") : labelOf(curveNames(), binding.curve),
            isParameter && !isRelative(binding) ? labelOf(buttonNames(), binding.button)
                                                : QString()};
}

} // namespace

BindingsView::BindingsView(Player& player, LiveControl& control, QWidget* parent)
    : QWidget(parent), player_(player), control_(control), form_(new BindingForm) {
    auto* split = new QSplitter(Qt::Horizontal);
    auto* scroll = new QScrollArea;
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidget(form_);
    split->addWidget(list());
    split->addWidget(scroll);
    split->setStretchFactor(0, 3);
    split->setStretchFactor(1, 2);
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(4, 4, 4, 4);
    rows->addWidget(split, 1);
    connect(table_, &QTreeWidget::currentItemChanged, this, &BindingsView::showForm);
    // Queued: the table is made anew.
    connect(form_, &BindingForm::edited, this, &BindingsView::edit, Qt::QueuedConnection);
    connect(&control_, &LiveControl::changed, this, &BindingsView::showBindings);
    connect(&control_, &LiveControl::learned, this, &BindingsView::choose);
    connect(&player_, &Player::activeChanged, this, &BindingsView::followParams);
    followParams();
    showBindings();
}

QWidget* BindingsView::learningRow() {
    auto* widget = new QWidget;
    auto* row = new QHBoxLayout(widget);
    row->setContentsMargins(0, 0, 0, 0);
    target_ = new TargetBox;
    onlyHere_ = new QCheckBox(tr("Only in this episode"));
    learn_ = new QPushButton(tr("Learn"));
    learn_->setCheckable(true);
    learn_->setToolTip(tr("Binds the next control that moves"));
    auto* add = new QPushButton(tr("Add"));
    add->setToolTip(tr("Adds a binding to fill in"));
    delete_ = new QPushButton(tr("Delete"));
    row->addWidget(target_, 1);
    row->addWidget(onlyHere_);
    row->addWidget(learn_);
    row->addWidget(add);
    row->addWidget(delete_);
    connect(learn_, &QPushButton::clicked, this, &BindingsView::toggleLearning);
    connect(add, &QPushButton::clicked, this, &BindingsView::add);
    connect(delete_, &QPushButton::clicked, this, &BindingsView::remove);
    return widget;
}

QWidget* BindingsView::list() {
    auto* widget = new QWidget;
    auto* rows = new QVBoxLayout(widget);
    rows->setContentsMargins(0, 0, 0, 0);
    hint_ = new QLabel;
    hint_->setWordWrap(true);
    table_ = new QTreeWidget;
    table_->setRootIsDecorated(false);
    table_->setUniformRowHeights(true);
    table_->setAccessibleName(tr("Bindings"));
    table_->setHeaderLabels(
        {tr("Control"), tr("Moves"), tr("Episode"), tr("Range"), tr("Curve"), tr("Button")});
    const int letter = table_->fontMetrics().averageCharWidth();
    for (const auto& [column, letters] : {std::pair{0, 26}, {1, 18}, {2, 16}, {3, 14}, {4, 12}})
        table_->header()->resizeSection(column, letter * letters);
    rows->addWidget(learningRow());
    rows->addWidget(hint_);
    rows->addWidget(table_, 1);
    return widget;
}

void BindingsView::followParams() {
    OpenDocument* document = player_.active();
    if (document != nullptr)
        connect(document, &OpenDocument::textChanged, this, &BindingsView::followParams,
                Qt::UniqueConnection);
    const auto params =
        document != nullptr ? document->document().episode()->params() : std::vector<ParamDecl>{};
    onlyHere_->setEnabled(document != nullptr);
    if (params == params_)
        return;
    const bool isUnchosen = params_.empty() || target_->currentText().isEmpty();
    params_ = params;
    target_->setParams(params);
    if (isUnchosen)
        target_->setCurrentIndex(0);
    form_->setParams(params);
}

void BindingsView::showBindings() {
    const int index = chosen();
    {
        const QSignalBlocker block(table_);
        table_->clear();
        for (const Binding& binding : control_.bindings())
            table_->addTopLevelItem(new QTreeWidgetItem(texts(binding)));
        const int last = table_->topLevelItemCount() - 1;
        if (last >= 0)
            table_->setCurrentItem(table_->topLevelItem(std::clamp(index, 0, last)));
    }
    learn_->setChecked(control_.learning() != nullptr);
    hint_->setText(hint());
    hint_->setVisible(!hint_->text().isEmpty());
    if (!form_->isAncestorOf(focusWidget()) || chosen() != index)
        showForm();
}

QString BindingsView::hint() const {
    if (const ControlTarget* target = control_.learning()) {
        const QString name = QString::fromStdString(tarnwick::player::labelOf(*target));
        return control_.input().isOn
                   ? tr("Move a knob, press a key, or send an OSC message for %1. Escape stops.")
                         .arg(name)
                   : tr("Move a knob or press a key for %1; OSC is not listened to. Escape stops.")
                         .arg(name);
    }
    return control_.bindings().empty() ? tr("Choose a parameter, then Learn. /tarnwick/NAME moves "
                                            "the parameter NAME without a binding.")
                                       : QString();
}

void BindingsView::showForm() {
    const int index = chosen();
    delete_->setEnabled(index >= 0);
    form_->setEnabled(index >= 0);
    if (index >= 0)
        form_->show(control_.bindings()[static_cast<std::size_t>(index)]);
}

int BindingsView::chosen() const {
    const int index = table_->indexOfTopLevelItem(table_->currentItem());
    return index < static_cast<int>(control_.bindings().size()) ? index : -1;
}

void BindingsView::choose(int index) {
    table_->setCurrentItem(table_->topLevelItem(index));
    showForm();
}

void BindingsView::toggleLearning() {
    if (control_.learning() != nullptr)
        control_.stopLearning();
    else
        control_.learn(target_->target(), onlyHere_->isChecked());
    learn_->setChecked(control_.learning() != nullptr);
}

void BindingsView::learn(const ControlTarget& target) {
    target_->setTarget(target);
    control_.learn(target, onlyHere_->isChecked());
}

void BindingsView::add() {
    std::vector<Binding> bindings = control_.bindings();
    bindings.push_back({.source = MIDIControl{}, .target = target_->target()});
    const int index = static_cast<int>(bindings.size()) - 1;
    control_.setBindings(std::move(bindings));
    choose(index);
}

void BindingsView::remove() {
    const int index = chosen();
    if (index < 0)
        return;
    std::vector<Binding> bindings = control_.bindings();
    bindings.erase(bindings.begin() + index);
    control_.setBindings(std::move(bindings));
}

void BindingsView::edit() {
    const int index = chosen();
    if (index < 0)
        return;
    std::vector<Binding> bindings = control_.bindings();
    bindings[static_cast<std::size_t>(index)] = form_->binding();
    control_.setBindings(std::move(bindings));
}

void BindingsView::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && control_.learning() != nullptr)
        control_.stopLearning();
    else if (event->key() == Qt::Key_Delete && table_->hasFocus())
        remove();
    else
        QWidget::keyPressEvent(event);
}

} // namespace tarnwick::player
