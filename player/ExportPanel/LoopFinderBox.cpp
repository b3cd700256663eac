#include "player/ExportPanel/LoopFinderBox.h"

#include "TarnwickCore/Text/OutsideJSON.h"
#include "player/ExportPanel/RangeForm.h"
#include "player/App/Background.h"

#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <algorithm>

namespace tarnwick::player {
namespace {

constexpr double longest = 3600;                 // seconds of a loop that is searched
constexpr int seamWidth = 540, seamHeight = 102; // points

std::optional<double> numberOf(const nlohmann::json& object, const char* name) {
    const nlohmann::json& member = memberOf(object, name);
    return member.is_number() ? std::optional(member.get<double>()) : std::nullopt;
}

} // namespace

LoopFinderBox::LoopFinderBox(std::function<LoopRequest()> request, QWidget* parent)
    : QGroupBox(tr("Loop"), parent), request_(std::move(request)) {
    around_ = secondsBox(tr("Approximate length of the loop"), longest);
    around_->setValue(8);
    range_ = secondsBox(tr("Maximum difference from that length"), 60);
    range_->setValue(0.5);
    crossfade_ = secondsBox(tr("Crossfade of the loop"), 60);
    find_ = new QPushButton(tr("F&ind length"));
    take_ = new QPushButton(tr("&Use this length"));
    bar_ = new QProgressBar;
    bar_->setAccessibleName(tr("Progress of the search"));
    bar_->setTextVisible(false);
    text_ = new QLabel;
    text_->setWordWrap(true);
    seam_ = new QLabel;
    for (QPushButton* button : {find_, take_})
        button->setAutoDefault(false);
    addRows();
    connect(crossfade_, &QDoubleSpinBox::valueChanged, this, &LoopFinderBox::changed);
    connect(find_, &QPushButton::clicked, this, &LoopFinderBox::findOrCancel);
    connect(take_, &QPushButton::clicked, this, [this] { emit lengthTaken(start_, length_); });
    showState();
}

void LoopFinderBox::addRows() {
    auto* form = new QFormLayout(this);
    auto* row = new QHBoxLayout;
    row->addWidget(around_);
    row->addWidget(new QLabel(QStringLiteral("\u00b1")));
    row->addWidget(range_);
    row->addWidget(find_);
    row->addWidget(take_);
    row->addStretch(1);
    auto* label = new QLabel(tr("Length &near:"));
    label->setBuddy(around_);
    form->addRow(tr("&Crossfade:"), crossfade_);
    form->addRow(label, row);
    form->addRow(bar_);
    form->addRow(text_);
    form->addRow(seam_);
}

void LoopFinderBox::setAround(double seconds) {
    if (length_ == 0 && !run_)
        around_->setValue(seconds);
}

double LoopFinderBox::crossfade() const {
    return crossfade_->value();
}

void LoopFinderBox::findOrCancel() {
    if (run_) {
        run_->cancel();
        return;
    }
    LoopRequest request = request_();
    request.around = around_->value();
    request.range = range_->value();
    request.crossfade = crossfade();
    length_ = 0;
    text_->clear();
    run_ = std::make_unique<OrderRun>(loopOrder(request));
    connect(run_.get(), &OrderRun::progressed, this, [this](const Progress& progress) {
        constexpr int whole = 1000;
        bar_->setRange(0, progress.isCounted() ? whole : 0);
        bar_->setValue(static_cast<int>(whole * progress.share()));
    });
    connect(run_.get(), &OrderRun::finished, this, &LoopFinderBox::showEnd);
    run_->start();
    showState();
}

void LoopFinderBox::showEnd(const ChildResult& result) {
    OrderRun* run = run_.release(); // the sender of the present signal
    run->deleteLater();
    if (!result.isDone) {
        text_->setText(QString::fromStdString(result.sentence));
    } else {
        showFound(result.output);
        inBackground(
            this,
            [files = run->files()] {
                return QImage(QString::fromStdString(files->path(seamFile).string()));
            },
            [this](const QImage& seam) { showSeam(seam); });
    }
    showState();
}

void LoopFinderBox::showFound(const std::string& json) {
    const auto object = objectOf(json);
    const auto start = object ? numberOf(*object, "start") : std::nullopt;
    const auto length = object ? numberOf(*object, "length") : std::nullopt;
    const auto frames = object ? numberOf(*object, "frames") : std::nullopt;
    const auto difference = object ? numberOf(*object, "difference") : std::nullopt;
    if (!start || !length || !frames || !difference)
        return;
    start_ = *start;
    length_ = *length;
    text_->setText(tr("%1 s, %2 frames. The ends differ by %3 of 255. Below: the first frame, the "
                      "frame after the last one, and their difference, eight times as bright.")
                       .arg(length_)
                       .arg(*frames)
                       .arg(*difference, 0, 'f', 2));
}

void LoopFinderBox::showSeam(const QImage& seam) {
    seam_->setPixmap(QPixmap::fromImage(
        seam.scaled(seamWidth, seamHeight, Qt::KeepAspectRatio, Qt::SmoothTransformation)));
    seam_->setAccessibleName(text_->text());
    showState();
}

void LoopFinderBox::showState() {
    find_->setText(run_ ? tr("Cancel") : tr("F&ind length"));
    take_->setVisible(length_ > 0);
    bar_->setVisible(run_ != nullptr);
    text_->setVisible(!text_->text().isEmpty());
    seam_->setVisible(length_ > 0 && !seam_->pixmap(Qt::ReturnByValue).isNull());
}

} // namespace tarnwick::player
