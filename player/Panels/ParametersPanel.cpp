#include "player/Panels/ParametersPanel.h"

#include "player/Panels/ParameterRow.h"

#include <QLabel>
#include <QMenu>
#include <QScrollArea>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

namespace tarnwick::player {

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
    scroll->setAccessibleName(tr("Parameters"));
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
    rebuild();
}

// The rows stay if only the numbers and descriptions of the declarations changed.
void ParametersPanel::rebuild() {
    const std::vector<ParamDecl> params =
        document_ != nullptr ? document_->document().episode()->params() : std::vector<ParamDecl>{};
    if (!std::ranges::equal(params, rows_, {}, &ParamDecl::name,
                            [](const ParameterRow* row) { return row->param().name; })) {
        for (ParameterRow* row : rows_)
            row->deleteLater();
        rows_.clear();
        for (const ParamDecl& param : params)
            addRow(param);
    }
    for (std::size_t index = 0; index < params.size(); ++index)
        if (params[index] != rows_[index]->param())
            rows_[index]->setParam(params[index]);
    empty_->setVisible(params.empty());
    showValues();
}

void ParametersPanel::addRow(const ParamDecl& param) {
    auto* row = new ParameterRow(param);
    rows_.push_back(row);
    list_->insertWidget(list_->count() - 1, row);
    const std::string& name = param.name;
    row->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(row, &QWidget::customContextMenuRequested, this,
            [this, row, name](const QPoint& place) {
                QMenu menu;
                emit menuWanted(QString::fromStdString(name), &menu);
                if (!menu.isEmpty())
                    menu.exec(row->mapToGlobal(place));
            });
    connect(row, &ParameterRow::valueChosen, this, [this, name](double value) {
        if (document_ != nullptr)
            document_->setValue(name, static_cast<float>(value));
    });
    connect(row, &ParameterRow::released, this, [this] {
        if (document_ != nullptr)
            document_->endGesture();
    });
    connect(row, &ParameterRow::keyToggled, this, [this, row] { toggleKey(row->param()); });
    connect(row, &ParameterRow::resetWanted, this, [this, name] {
        if (document_ != nullptr)
            document_->resetValue(name);
    });
    connect(row, &ParameterRow::numbersChosen, this, [this, name](const ParamNumbers& numbers) {
        if (document_ != nullptr)
            document_->setParamNumbers(name, numbers);
    });
}

// Whether the parameter has a key at the time.
static bool hasKey(const Settings& settings, const std::string& name, double time) {
    const auto keys = settings.keys.keys(name);
    return std::ranges::any_of(keys, [&](const KeyframeTracks::Key& key) {
        return std::abs(key.time - time) < KeyframeTracks::snap;
    });
}

// Adds a key at the present time, or removes the one that is there.
void ParametersPanel::toggleKey(const ParamDecl& param) {
    if (document_ == nullptr)
        return;
    Settings settings = document_->document().settings();
    const double time = document_->time();
    const bool isThere = hasKey(settings, param.name, time);
    if (isThere)
        settings.keys.remove(param.name, time);
    else
        settings.keys.set(param.name, time, document_->document().valueAt(param, time));
    document_->setSettings(std::move(settings),
                           (isThere ? "Remove key of " : "Add key of ") + param.name);
}

void ParametersPanel::showValues() {
    if (document_ == nullptr)
        return;
    const double time = document_->time();
    const Document& document = document_->document();
    const Settings& settings = document.settings();
    for (ParameterRow* row : rows_) {
        const std::string& name = row->param().name;
        row->showState(
            {.value = document_->valueNow(row->param()),
             .hasKey = hasKey(settings, name, time),
             .canReset = settings.values.contains(name) || !settings.keys.keys(name).empty()});
    }
}

} // namespace tarnwick::player
