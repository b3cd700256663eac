#include "player/ExportPanel/ExportDialog.h"

#include "player/ExportPanel/FileField.h"
#include "player/ExportPanel/InputsBox.h"
#include "player/ExportPanel/LastFolders.h"
#include "player/ExportPanel/LoopFinderBox.h"
#include "player/ExportPanel/MovieFormatForm.h"
#include "player/ExportPanel/RangeForm.h"
#include "player/Exports/ChapterLines.h"

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <cmath>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr double usualLength = 10;         // seconds, of an episode without @length
constexpr double longestMovie = 24 * 3600; // seconds, as the command line has it

QGroupBox* group(const QString& title, QWidget* content) {
    auto* box = new QGroupBox(title);
    auto* column = new QVBoxLayout(box);
    column->addWidget(content);
    return box;
}

} // namespace

ExportDialog::ExportDialog(LastFolders& folders, const OpenDocument& document, EpisodeCopy copy,
                           QWidget* parent)
    : QDialog(parent), folders_(folders), episode_(std::move(copy)) {
    setWindowTitle(tr("Export movie"));
    makeParts(document);
    layOut();
    connect(format_, &MovieFormatForm::changed, this, &ExportDialog::showEnding);
    connect(range_, &RangeForm::changed, this, [this] {
        loop_->setAround(range_->duration());
        showState();
    });
    connect(loop_, &LoopFinderBox::lengthTaken, range_, &RangeForm::setRange);
    connect(chapters_, &QPlainTextEdit::textChanged, this, &ExportDialog::showState);
    for (FileField* field : {performance_, output_})
        connect(field, &FileField::changed, this, &ExportDialog::showState);
    loop_->setAround(range_->duration());
    showState();
}

void ExportDialog::setPerformance(const std::filesystem::path& file) {
    performance_->setText(QString::fromStdString(file.string()));
    showState();
}

void ExportDialog::makeParts(const OpenDocument& document) {
    const Episode& episode = *document.document().episode();
    format_ = new MovieFormatForm(episode.shader.hasSound || episode_.inputs.playsSound);
    range_ = new RangeForm(episode.length().value_or(usualLength), document.transport().loop);
    loop_ = new LoopFinderBox([this] {
        return LoopRequest{.episode = episode_,
                           .start = range_->start(),
                           .framesPerSecond = format_->framesPerSecond()};
    });
    chapters_ = new QPlainTextEdit;
    chapters_->setPlaceholderText(tr("0:00 Beginning\n0:05 Rings"));
    chapters_->setAccessibleName(tr("Chapters, a time and a title in each line"));
    chapters_->setTabChangesFocus(true);
    chapters_->setMaximumHeight(64);
    performance_ = new FileField(
        tr("Performance"), [this](const QString& present) { return choosePerformance(present); });
    output_ =
        new FileField(tr("Movie"), [this](const QString& present) { return chooseMovie(present); });
    output_->setText(folders_.of(FolderKind::movies) + QLatin1Char('/') +
                     QFileInfo(QString::fromStdString(episode_.fileName())).completeBaseName() +
                     QStringLiteral(".mp4"));
    inputs_ = new InputsBox(episode_.inputs, this);
    frames_ = new QLabel;
    problem_ = new QLabel;
    problem_->setWordWrap(true);
}

void ExportDialog::layOut() {
    auto* left = new QVBoxLayout;
    left->addWidget(group(tr("Format"), format_));
    left->addWidget(group(tr("Range"), range()));
    left->addStretch(1);
    auto* right = new QVBoxLayout;
    right->addWidget(loop_);
    right->addWidget(group(tr("Chapters and performance"), extras()));
    right->addStretch(1);
    auto* halves = new QHBoxLayout;
    halves->addLayout(left);
    halves->addLayout(right, 1);
    auto* buttons = new QDialogButtonBox;
    accept_ = buttons->addButton(tr("&Export"), QDialogButtonBox::AcceptRole);
    buttons->addButton(QDialogButtonBox::Cancel); // the last one that Tab reaches
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* column = new QVBoxLayout(this);
    column->addLayout(halves);
    column->addWidget(inputs_);
    column->addWidget(files());
    column->addWidget(problem_);
    column->addWidget(buttons);
    accept_->setDefault(true); // once the dialog has it
    format_->setFocus();
}

QWidget* ExportDialog::range() {
    auto* both = new QWidget;
    auto* column = new QVBoxLayout(both);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(range_);
    column->addWidget(frames_);
    return both;
}

QWidget* ExportDialog::extras() {
    auto* extras = new QWidget;
    auto* form = new QFormLayout(extras);
    form->setContentsMargins(0, 0, 0, 0);
    form->addRow(tr("C&hapters:"), chapters_);
    form->addRow(tr("Perfor&mance:"), performance_);
    return extras;
}

QWidget* ExportDialog::files() {
    auto* files = new QWidget;
    auto* form = new QFormLayout(files);
    form->setContentsMargins(0, 0, 0, 0);
    form->addRow(tr("Mo&vie:"), output_);
    return files;
}

QString ExportDialog::chooseMovie(const QString& present) {
    const auto extension = format_->preset().fileExtension();
    const QString ending = QString::fromUtf8(extension.data(), qsizetype(extension.size()));
    return newFileName(this, tr("Export movie"), present, tr("Movies (*.%1)").arg(ending));
}

QString ExportDialog::choosePerformance(const QString& present) {
    const QString begin = present.isEmpty() ? folders_.of(FolderKind::performances) : present;
    const QString file = QFileDialog::getOpenFileName(
        this, tr("Performance"), begin, tr("Performances (*.json *.performance);;All files (*)"));
    if (!file.isEmpty())
        folders_.keep(FolderKind::performances, QFileInfo(file).absolutePath());
    return file;
}

void ExportDialog::showEnding() {
    const auto extension = format_->preset().fileExtension();
    const QFileInfo name(output_->text());
    if (!output_->text().isEmpty())
        output_->setText(name.path() + QLatin1Char('/') + name.completeBaseName() +
                         QLatin1Char('.') +
                         QString::fromUtf8(extension.data(), qsizetype(extension.size())));
    showState();
}

// With a performance the command line decides.
double ExportDialog::movieLength() const {
    return performance_->path() ? longestMovie : range_->duration();
}

QString ExportDialog::problem() const {
    if (!performance_->path() && !(range_->duration() > 0))
        return tr("The range is empty: its end must be after its start.");
    if (!output_->path() || !output_->path()->is_absolute())
        return tr("The movie needs the full name of a file.");
    return QString::fromStdString(
        ChapterLines::read(chapters_->toPlainText().toStdString(), movieLength()).error);
}

void ExportDialog::showState() {
    const bool hasRange = !performance_->path();
    range_->setEnabled(hasRange);
    loop_->setEnabled(hasRange);
    if (hasRange)
        inputs_->show(episode_.inputs);
    else
        inputs_->showSentence(tr("The inputs are those of the performance."));
    const double frames =
        std::round(range_->duration() * static_cast<double>(format_->framesPerSecond()));
    frames_->setText(hasRange && frames > 0
                         ? tr("%1 s, %2 frames").arg(range_->duration()).arg(frames, 0, 'f', 0)
                         : QString());
    const QString reason = problem();
    problem_->setText(reason);
    accept_->setEnabled(reason.isEmpty());
}

MovieRequest ExportDialog::request() const {
    MovieRequest request{.episode = episode_,
                         .format = format_->format(),
                         .start = range_->start(),
                         .duration = range_->duration(),
                         .crossfade = loop_->crossfade(),
                         .performance = performance_->path(),
                         .output = output_->path().value_or(std::filesystem::path())};
    request.chapters =
        ChapterLines::read(chapters_->toPlainText().toStdString(), movieLength()).chapters;
    folders_.keep(FolderKind::movies,
                  QString::fromStdString(request.output.parent_path().string()));
    return request;
}

} // namespace tarnwick::player
