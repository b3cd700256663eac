#include "player/ExportPanel/WalkthroughDialog.h"

#include "player/ExportPanel/FileField.h"
#include "player/ExportPanel/InputsBox.h"
#include "player/ExportPanel/LastFolders.h"
#include "player/ExportPanel/MovieFormatForm.h"
#include "player/ExportPanel/RangeForm.h"
#include "player/ExportPanel/StageList.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QDoubleSpinBox>
#include <QFileInfo>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr double longestPage = 600;        // seconds
constexpr double longestStart = 24 * 3600; // seconds

} // namespace

WalkthroughDialog::WalkthroughDialog(LastFolders& folders, EpisodeCopy episode, bool hasSound,
                                     const QString& folder, QWidget* parent)
    : QDialog(parent), folders_(folders), episode_(std::move(episode)) {
    setWindowTitle(tr("Export walkthrough"));
    stages_ = new StageList(folder);
    const QDir proposed(folder + QStringLiteral("/stages"));
    if (!folder.isEmpty())
        for (const QFileInfo& file :
             proposed.entryInfoList({QStringLiteral("*.metal")}, QDir::Files, QDir::Name))
            stages_->add({file.absoluteFilePath()});
    movie_ = new QRadioButton(tr("A &movie with chapters"));
    pictures_ = new QRadioButton(tr("A folder of p&ictures"));
    movie_->setChecked(true);
    format_ = new MovieFormatForm(hasSound);
    pageSeconds_ = secondsBox(tr("Seconds of each page"), longestPage);
    pageSeconds_->setMinimum(0.1);
    pageSeconds_->setValue(6);
    start_ = secondsBox(tr("Time of the episode at the start"), longestStart);
    output_ = new FileField(tr("Result"), [this](const QString& present) {
        return newFileName(this, tr("Export walkthrough"), present, QString());
    });
    output_->setText(folders_.of(FolderKind::movies) + QLatin1Char('/') +
                     QFileInfo(QString::fromStdString(episode_.fileName())).completeBaseName() +
                     tr(" walkthrough"));
    layOut();
    connect(movie_, &QRadioButton::toggled, this, &WalkthroughDialog::showOutput);
    connect(format_, &MovieFormatForm::changed, this, &WalkthroughDialog::showOutput);
    connect(output_, &FileField::changed, this, &WalkthroughDialog::showState);
    showOutput();
}

void WalkthroughDialog::layOut() {
    auto* form = new QFormLayout(this);
    form->addRow(new QLabel(tr("Explains the episode by the lines that each version adds.")));
    form->addRow(tr("Earlier versions:"), stages_);
    form->addRow(tr("Result:"), movie_);
    form->addRow(QString(), pictures_);
    form->addRow(tr("Format:"), format_);
    form->addRow(tr("Seconds of a pa&ge:"), pageSeconds_);
    form->addRow(tr("&Begin at:"), start_);
    form->addRow(new InputsBox(episode_.inputs, this));
    form->addRow(tr("Fi&le or folder:"), output_);
    auto* buttons = new QDialogButtonBox;
    accept_ = buttons->addButton(tr("&Export"), QDialogButtonBox::AcceptRole);
    buttons->addButton(QDialogButtonBox::Cancel); // the last one that Tab reaches
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    form->addRow(buttons);
    accept_->setDefault(true);
}

// A movie has the ending of its preset, a folder none.
void WalkthroughDialog::showOutput() {
    const bool isMovie = movie_->isChecked();
    const auto extension = format_->preset().fileExtension();
    const QFileInfo name(output_->text());
    QString base = name.fileName();
    for (const char* ending : {".mp4", ".mov"})
        if (base.endsWith(QLatin1String(ending)))
            base.chop(4);
    if (isMovie)
        base += QLatin1Char('.') +
                QString::fromUtf8(extension.data(), static_cast<qsizetype>(extension.size()));
    output_->setText(name.path() + QLatin1Char('/') + base);
    for (QWidget* box : {pageSeconds_, start_})
        box->setEnabled(isMovie);
    showState();
}

void WalkthroughDialog::showState() {
    accept_->setEnabled(QDir::isAbsolutePath(output_->text()));
}

WalkthroughRequest WalkthroughDialog::request() const {
    WalkthroughRequest request{.episode = episode_,
                               .stages = stages_->files(),
                               .isMovie = movie_->isChecked(),
                               .format = format_->format(),
                               .pageSeconds = pageSeconds_->value(),
                               .start = start_->value(),
                               .output = output_->path().value_or(std::filesystem::path())};
    request.size = format_->size();
    folders_.keep(FolderKind::movies,
                  QString::fromStdString(request.output.parent_path().string()));
    return request;
}

} // namespace tarnwick::player
