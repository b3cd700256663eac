#include "player/VariationsPanel/VariationsPanel.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QPushButton>
#include <QRandomGenerator>
#include <QSignalBlocker>
#include <QSlider>
#include <QVBoxLayout>

namespace tarnwick::player {
namespace {

constexpr int pictureWidth = 116;
constexpr PixelSize drawnSize{232, 131};
constexpr int hundred = 100, fine = 1000; // steps of the spread and of the mix
constexpr int mixStep = fine / 20;
constexpr int settleTime = 1000; // milliseconds

} // namespace

VariationsPanel::VariationsPanel(Player& player, ThumbnailService& service, QWidget* parent)
    : QWidget(parent), player_(player) {
    grid_ = new CellGrid(service, pictureWidth);
    grid_->setAccessibleName(tr("Variations"));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(8, 8, 8, 8);
    column->addWidget(head());
    column->addWidget(grid_, 1);
    column->addWidget(snapshots());
    settle_.setSingleShot(true);
    settle_.setInterval(settleTime);
    connect(&settle_, &QTimer::timeout, this, &VariationsPanel::showVariations);
    connect(grid_, &CellGrid::chosen, this, &VariationsPanel::take);
    connect(&player_, &Player::activeChanged, this, &VariationsPanel::follow);
    follow();
}

QWidget* VariationsPanel::head() {
    auto* made = new QWidget;
    auto* rows = new QGridLayout(made);
    rows->setContentsMargins(0, 0, 0, 0);
    auto* random = new QPushButton(tr("Randomise"));
    random->setToolTip(tr("Random values over the whole ranges"));
    auto* again = new QPushButton(tr("New variations"));
    again->setToolTip(tr("Other variations near the present values"));
    auto* export_ = new QPushButton(tr("Export..."));
    export_->setToolTip(tr("A movie or a picture of the variations"));
    auto* reset = new QPushButton(tr("Reset all"));
    reset->setToolTip(tr("Default values of all parameters, without keys"));
    spread_ = new QSlider(Qt::Horizontal);
    spread_->setRange(0, hundred);
    spread_->setValue(hundred / 2);
    spread_->setAccessibleName(tr("Spread of the variations"));
    spread_->setToolTip(tr("How far the variations are from the present values"));
    rows->addWidget(random, 0, 0);
    rows->addWidget(reset, 0, 1);
    rows->addWidget(export_, 0, 2);
    rows->addWidget(again, 1, 0);
    rows->addWidget(spread_, 1, 1, 1, 2);
    connect(export_, &QPushButton::clicked, this, &VariationsPanel::askForExport);
    connect(reset, &QPushButton::clicked, this, &VariationsPanel::resetAll);
    connect(random, &QPushButton::clicked, this, &VariationsPanel::randomise);
    connect(again, &QPushButton::clicked, this, &VariationsPanel::vary);
    connect(spread_, &QSlider::valueChanged, &settle_, qOverload<>(&QTimer::start));
    return made;
}

QWidget* VariationsPanel::snapshots() {
    auto* made = new QWidget;
    auto* row = new QHBoxLayout(made);
    row->setContentsMargins(0, 0, 0, 0);
    keepA_ = new QPushButton(tr("Keep A"));
    keepB_ = new QPushButton(tr("Keep B"));
    keepA_->setToolTip(tr("Keep the present values as snapshot A"));
    keepB_->setToolTip(tr("Keep the present values as snapshot B"));
    mix_ = new QSlider(Qt::Horizontal);
    mix_->setRange(0, fine);
    mix_->setSingleStep(fine / 100);
    mix_->setPageStep(fine / 10);
    mix_->setAccessibleName(tr("Mix of the snapshots A and B"));
    row->addWidget(keepA_);
    row->addWidget(mix_, 1);
    row->addWidget(keepB_);
    connect(keepA_, &QPushButton::clicked, this, &VariationsPanel::keepA);
    connect(keepB_, &QPushButton::clicked, this, &VariationsPanel::keepB);
    connect(mix_, &QSlider::valueChanged, this, [this](int value) {
        if (document_ != nullptr)
            document_->morph(static_cast<float>(value) / fine);
    });
    connect(mix_, &QSlider::sliderReleased, this, [this] {
        if (document_ != nullptr)
            document_->endGesture();
    });
    return made;
}

void VariationsPanel::follow() {
    if (document_ != nullptr)
        document_->disconnect(this);
    document_ = player_.active();
    setEnabled(document_ != nullptr);
    isStale_ = true;
    if (document_ != nullptr) {
        center_ = document_->document().settings();
        connect(document_, &OpenDocument::settingsChanged, this, &VariationsPanel::showState);
        connect(document_, &OpenDocument::resultChanged, this, [this] {
            if (document_->result()->program)
                settle_.start();
        });
    }
    showState();
    if (isVisible())
        showVariations();
}

void VariationsPanel::showState() {
    if (document_ == nullptr)
        return;
    const auto& [a, b] = document_->document().state().snapshots;
    keepA_->setText(a ? tr("Keep A \u2713") : tr("Keep A"));
    keepB_->setText(b ? tr("Keep B \u2713") : tr("Keep B"));
    mix_->setEnabled(a && b);
    mix_->setToolTip(a && b ? tr("From snapshot A to snapshot B")
                            : tr("Keep the snapshots A and B first"));
}

void VariationsPanel::showVariations() {
    if (document_ == nullptr || !isVisible()) {
        isStale_ = true;
        if (document_ == nullptr)
            grid_->setCells({});
        return;
    }
    isStale_ = false;
    const auto episode = document_->document().episode();
    series_ = variationsNear(*episode, center_, seed_, count,
                             static_cast<float>(spread_->value()) / hundred);
    std::vector<Cell> cells;
    for (const Variation& one : series_) {
        const QStringList parts = QString::fromStdString(one.highlights).split(", ");
        Cell cell{.title = parts.front().isEmpty() ? tr("Present values") : parts.front(),
                  .detail = parts.size() > 1 ? parts.back() : QStringLiteral(" ")};
        cell.source.episode = episode;
        cell.source.settings = withValues(center_, one.values);
        cell.source.size = drawnSize;
        cells.push_back(std::move(cell));
    }
    grid_->setCells(std::move(cells));
}

void VariationsPanel::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (isStale_)
        showVariations();
}

void VariationsPanel::set(const Settings& settings, const char* change) {
    document_->endGesture();
    document_->setSettings(settings, change);
}

ShownVariations VariationsPanel::shown() const {
    ShownVariations shown{.center = center_,
                          .seed = seed_,
                          .count = count,
                          .spread = static_cast<float>(spread_->value()) / hundred,
                          .chosen = taken_};
    if (document_ != nullptr)
        shown.snapshots = document_->document().state().snapshots;
    return shown;
}

void VariationsPanel::askForExport() {
    if (document_ != nullptr)
        emit exportWanted();
}

void VariationsPanel::take(int row) {
    taken_ = row + 1;
    if (document_ != nullptr)
        set(withValues(document_->document().settings(),
                       series_.at(static_cast<std::size_t>(row)).values),
            "Take variation");
}

void VariationsPanel::randomise() {
    if (document_ == nullptr)
        return;
    const Document& document = document_->document();
    set(withValues(document.settings(), randomValues(*document.episode(), document.settings(),
                                                     QRandomGenerator::global()->generate64())),
        "Randomise");
}

void VariationsPanel::vary() {
    if (document_ == nullptr)
        return;
    center_ = document_->document().settings();
    seed_ = QRandomGenerator::global()->generate64();
    showVariations();
}

void VariationsPanel::resetAll() {
    if (document_ != nullptr)
        set(withDefaults(document_->document().settings(), *document_->document().episode()),
            "Reset all");
}

void VariationsPanel::keepA() {
    if (document_ != nullptr)
        document_->keepSnapshot(0);
}

void VariationsPanel::keepB() {
    if (document_ != nullptr)
        document_->keepSnapshot(1);
}

void VariationsPanel::morphTowardsA() {
    if (mix_->isEnabled())
        mix_->setValue(mix_->value() - mixStep);
}

void VariationsPanel::morphTowardsB() {
    if (mix_->isEnabled())
        mix_->setValue(mix_->value() + mixStep);
}

} // namespace tarnwick::player
