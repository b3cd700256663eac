#include "player/Performances/PerformancesPanel.h"

#include "TarnwickPlatform/Dispatch/HostClock.h"

#include <QDateTime>
#include <QFile>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QMessageBox>
#include <QSignalBlocker>
#include <QSlider>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <chrono>
#include <cmath>

namespace tarnwick::player {
namespace {

constexpr double ticks = 100; // of the slider in a second
constexpr int fileRole = Qt::UserRole;

QString filter() {
    return QObject::tr("Performances (*.performance);;All files (*)");
}

// "1:02.5".
QString timeText(double seconds) {
    const auto tenths = static_cast<qint64>(std::floor(seconds * 10));
    return QStringLiteral("%1:%2.%3")
        .arg(tenths / 600)
        .arg(tenths / 10 % 60, 2, 10, QLatin1Char('0'))
        .arg(tenths % 10);
}

QString dateText(std::filesystem::file_time_type time) {
    using namespace std::chrono;
    const auto system = time_point_cast<seconds>(file_clock::to_sys(time));
    return QLocale().toString(QDateTime::fromSecsSinceEpoch(system.time_since_epoch().count()),
                              QLocale::ShortFormat);
}

} // namespace

PerformancesPanel::PerformancesPanel(Player& player, Performer& performer, QWidget* parent)
    : QWidget(parent), player_(player), performer_(performer) {
    record_ = button(tr("Record"), &PerformancesPanel::toggleRecording);
    replay_ = button(tr("Replay"), &PerformancesPanel::toggleReplay);
    pause_ = button(tr("Pause"), &PerformancesPanel::togglePause);
    QToolButton* open = button(tr("Open..."), &PerformancesPanel::open);
    save_ = button(tr("Save as..."), &PerformancesPanel::saveAs);
    export_ = button(tr("Export movie..."), &PerformancesPanel::exportMovie);
    remove_ = button(tr("Remove"), &PerformancesPanel::remove);
    position_ = new QSlider(Qt::Horizontal);
    position_->setAccessibleName(tr("Time of the performance"));
    time_ = new QLabel;
    time_->setMinimumWidth(
        time_->fontMetrics().horizontalAdvance(tr("Recording %1").arg(QStringLiteral("000:00.0"))));
    list_ = new QTreeWidget;
    list_->setRootIsDecorated(false);
    list_->setAccessibleName(tr("Performances"));
    list_->setHeaderLabels({tr("Performance"), tr("Episode"), tr("Length"), tr("Recorded")});
    list_->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    auto* row = new QHBoxLayout;
    for (QToolButton* one : {record_, replay_, pause_})
        row->addWidget(one);
    row->addWidget(position_, 1);
    row->addWidget(time_);
    for (QToolButton* one : {open, save_, export_, remove_})
        row->addWidget(one);
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(6, 4, 6, 4);
    rows->addLayout(row);
    rows->addWidget(list_, 1);
    connect(position_, &QSlider::valueChanged, this, [this](int value) {
        performer_.setClock(performer_.clock().sought(value / ticks, currentMediaTime()));
    });
    connect(list_, &QTreeWidget::itemActivated, this, [this] { performer_.replay(chosen()); });
    connect(list_, &QTreeWidget::currentItemChanged, this, &PerformancesPanel::showState);
    connect(&performer_, &Performer::changed, this, &PerformancesPanel::showState);
    connect(&performer_, &Performer::moved, this, &PerformancesPanel::showTime);
    connect(&performer_, &Performer::keptRefreshed, this, &PerformancesPanel::showList);
    connect(&player_, &Player::activeChanged, this, &PerformancesPanel::showState);
    showState();
}

QToolButton* PerformancesPanel::button(const QString& text, void (PerformancesPanel::*slot)()) {
    auto* made = new QToolButton;
    made->setText(text);
    made->setAccessibleName(text);
    made->setFocusPolicy(Qt::StrongFocus);
    connect(made, &QToolButton::clicked, this, slot);
    return made;
}

void PerformancesPanel::toggleRecording() {
    if (performer_.isRecording())
        performer_.stopRecording();
    else
        performer_.record();
}

void PerformancesPanel::toggleReplay() {
    if (performer_.isReplaying())
        performer_.stopReplay();
    else if (!chosen().empty())
        performer_.replay(chosen());
}

void PerformancesPanel::togglePause() {
    const double now = currentMediaTime();
    const Transport& clock = performer_.clock();
    performer_.setClock(clock.isPlaying ? clock.paused(now) : clock.played(now));
}

void PerformancesPanel::open() {
    const QString file =
        QFileDialog::getOpenFileName(this, tr("Open performance"), QString(), filter());
    if (!file.isEmpty())
        performer_.replay(file.toStdString());
}

void PerformancesPanel::saveAs() {
    const std::filesystem::path from = chosen();
    if (from.empty())
        return;
    const OpenDocument* document = player_.active();
    std::filesystem::path beside = from.filename();
    if (document != nullptr && document->document().file())
        beside = document->document().file()->parent_path() / beside;
    const QString file = QFileDialog::getSaveFileName(
        this, tr("Save performance"), QString::fromStdString(beside.string()), filter());
    if (!file.isEmpty())
        performer_.save(from, file.toStdString());
}

void PerformancesPanel::exportMovie() {
    if (const std::filesystem::path file = chosen(); !file.empty())
        emit exportWanted(file);
}

void PerformancesPanel::remove() {
    const QString file = QString::fromStdString(chosen().string());
    if (file.isEmpty())
        return;
    const auto answer = QMessageBox::question(this, tr("Remove performance"),
                                              tr("Move this performance to the trash?"));
    if (answer == QMessageBox::Yes && !QFile::moveToTrash(file))
        player_.tell(tr("%1 cannot be moved to the trash.").arg(file));
    performer_.refresh();
}

std::filesystem::path PerformancesPanel::chosen() const {
    const QTreeWidgetItem* item = list_->currentItem();
    if (item == nullptr)
        return {};
    return item->data(0, fileRole).toString().toStdString();
}

void PerformancesPanel::showList() {
    list_->clear();
    for (const KeptPerformance& one : performer_.kept()) {
        auto* item = new QTreeWidgetItem(list_, {QString::fromStdString(one.file.stem().string()),
                                                 QString::fromStdString(one.title),
                                                 timeText(one.length), dateText(one.time)});
        item->setData(0, fileRole, QString::fromStdString(one.file.string()));
    }
    list_->setCurrentItem(list_->topLevelItem(0));
    showState();
}

void PerformancesPanel::showState() {
    const bool isRecording = performer_.isRecording(), isReplaying = performer_.isReplaying();
    record_->setText(isRecording ? tr("Stop recording") : tr("Record"));
    record_->setAccessibleName(record_->text());
    record_->setEnabled(player_.active() != nullptr);
    replay_->setText(isReplaying ? tr("Stop replay") : tr("Replay"));
    replay_->setAccessibleName(replay_->text());
    replay_->setEnabled(isReplaying || !chosen().empty());
    pause_->setText(isReplaying && !performer_.clock().isPlaying ? tr("Continue") : tr("Pause"));
    pause_->setAccessibleName(pause_->text());
    pause_->setEnabled(isReplaying);
    position_->setEnabled(isReplaying);
    save_->setEnabled(!chosen().empty());
    export_->setEnabled(!chosen().empty() && player_.active() != nullptr);
    remove_->setEnabled(!chosen().empty());
    showTime();
}

void PerformancesPanel::showTime() {
    const double seconds = performer_.seconds(), length = performer_.length();
    if (performer_.isRecording())
        time_->setText(tr("Recording %1").arg(timeText(seconds)));
    else if (performer_.isReplaying())
        time_->setText(tr("%1 of %2").arg(timeText(seconds), timeText(length)));
    else
        time_->clear();
    const QSignalBlocker blocker(position_);
    position_->setRange(0, static_cast<int>(length * ticks));
    if (!position_->isSliderDown())
        position_->setValue(static_cast<int>(seconds * ticks));
}

} // namespace tarnwick::player
