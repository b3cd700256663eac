#include "player/ExportPanel/JobRow.h"

#include "player/ExportPanel/PictureImage.h"

#include <QDesktopServices>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QStringList>
#include <QUrl>
#include <QVBoxLayout>

namespace tarnwick::player {
namespace {

constexpr QSize thumbnailSize(112, 63);

QString nameOf(const std::filesystem::path& path) {
    return QString::fromStdString(path.filename().string());
}

// The place, and what the export said.
QString resultText(const ExportJob& job) {
    QStringList lines{QString::fromStdString(job.result.value_or(job.wanted).string())};
    for (const std::string& remark : job.remarks)
        lines += QString::fromStdString(remark);
    return lines.join(QLatin1Char('\n'));
}

QString stateText(const ExportJob& job) {
    switch (job.state) {
    case ExportState::waiting:
        return QObject::tr("Waiting");
    case ExportState::running:
        return job.progress.isCounted() || !job.progress.doing.empty()
                   ? QString::fromStdString(progressText(job.progress, job.pace))
                   : QObject::tr("Starting");
    case ExportState::done:
        return resultText(job);
    case ExportState::failed:
        return QString::fromStdString(job.sentence);
    case ExportState::cancelled:
        return QObject::tr("Cancelled");
    }
    return {};
}

} // namespace

JobRow::JobRow(ExportQueue& queue, int id, QWidget* parent)
    : QFrame(parent), queue_(queue), id_(id) {
    setFrameShape(QFrame::StyledPanel);
    auto* row = new QHBoxLayout(this);
    thumbnail_ = new QLabel;
    thumbnail_->setFixedSize(thumbnailSize);
    thumbnail_->setAlignment(Qt::AlignCenter);
    row->addWidget(thumbnail_);
    auto* middle = new QVBoxLayout;
    title_ = new QLabel;
    QFont bold = title_->font();
    bold.setBold(true);
    title_->setFont(bold);
    title_->setTextFormat(Qt::PlainText);
    state_ = new QLabel;
    state_->setTextFormat(Qt::PlainText);
    state_->setWordWrap(true);
    state_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    bar_ = new QProgressBar;
    bar_->setTextVisible(false);
    bar_->setMaximumHeight(10);
    for (QWidget* widget : {static_cast<QWidget*>(title_), static_cast<QWidget*>(bar_),
                            static_cast<QWidget*>(state_)})
        middle->addWidget(widget);
    row->addLayout(middle, 1);
    cancel_ = addButton(*row, tr("Cancel"), tr("Cancel the export of %1"));
    open_ = addButton(*row, tr("Open"), tr("Open %1"));
    folder_ = addButton(*row, tr("Folder"), tr("Open the folder of %1"));
    again_ = addButton(*row, tr("Try again"), tr("Try the export of %1 again"));
    remove_ = addButton(*row, tr("Remove"), tr("Remove %1 from the list"));
    connect(cancel_, &QPushButton::clicked, this, [this] { queue_.cancel(id_); });
    connect(open_, &QPushButton::clicked, this, [this] { open(false); });
    connect(folder_, &QPushButton::clicked, this, [this] { open(true); });
    connect(again_, &QPushButton::clicked, this, [this] { queue_.again(id_); });
    connect(remove_, &QPushButton::clicked, this, [this] { queue_.remove(id_); });
    show(queue_.jobs().at(id_));
}

QPushButton* JobRow::addButton(QLayout& row, const QString& text, const QString& spoken) {
    auto* button = new QPushButton(text);
    button->setAccessibleName(spoken.arg(nameOf(queue_.jobs().at(id_).wanted)));
    button->setAutoDefault(false);
    row.addWidget(button);
    return button;
}

void JobRow::show(const ExportJob& job) {
    title_->setText(QString::fromStdString(job.title) + QStringLiteral(" \u2192 ") +
                    nameOf(job.result.value_or(job.wanted)));
    state_->setText(stateText(job));
    bar_->setVisible(job.state == ExportState::running);
    bar_->setAccessibleName(tr("Progress of %1").arg(nameOf(job.wanted)));
    constexpr int whole = 1000;
    bar_->setRange(0, job.progress.isCounted() ? whole : 0); // without an end: busy
    bar_->setValue(static_cast<int>(whole * job.progress.share()));
    cancel_->setVisible(!job.isOver());
    open_->setVisible(job.state == ExportState::done);
    folder_->setVisible(job.state == ExportState::done);
    again_->setVisible(job.isOver() && job.state != ExportState::done);
    remove_->setVisible(job.isOver());
    showThumbnail(job);
}

void JobRow::showThumbnail(const ExportJob& job) {
    thumbnail_->setVisible(job.thumbnail != nullptr);
    if (!job.thumbnail || !thumbnail_->pixmap(Qt::ReturnByValue).isNull())
        return;
    thumbnail_->setPixmap(
        QPixmap::fromImage(imageOf(*job.thumbnail))
            .scaled(thumbnailSize, Qt::KeepAspectRatio, Qt::SmoothTransformation));
    thumbnail_->setAccessibleName(tr("First picture of %1").arg(nameOf(job.wanted)));
}

void JobRow::open(bool isFolder) {
    const auto& result = queue_.jobs().at(id_).result;
    if (!result)
        return;
    const std::filesystem::path path = isFolder ? result->parent_path() : *result;
    QDesktopServices::openUrl(QUrl::fromLocalFile(QString::fromStdString(path.string())));
}

} // namespace tarnwick::player
