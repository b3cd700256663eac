#include "player/ExportPanel/VariationsDialog.h"

#include "player/ExportPanel/FileField.h"
#include "player/ExportPanel/InputsBox.h"
#include "player/ExportPanel/LastFolders.h"
#include "player/ExportPanel/MovieFormatForm.h"
#include "player/ExportPanel/RangeForm.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QDoubleSpinBox>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr double leastSeconds = 0.1, mostSeconds = 3600; // of a variation

} // namespace

VariationsDialog::VariationsDialog(LastFolders& folders, EpisodeCopy episode, ShownVariations shown,
                                   bool hasSound, double seconds, QWidget* parent)
    : QDialog(parent), folders_(folders), episode_(std::move(episode)), shown_(std::move(shown)) {
    setWindowTitle(tr("Export variations"));
    makeParts(hasSound, seconds);
    layOut();
    for (QRadioButton* button : {all_, one_, morph_, sheet_})
        connect(button, &QRadioButton::toggled, this, &VariationsDialog::showOutput);
    connect(number_, &QSpinBox::valueChanged, this, [this] { one_->setChecked(true); });
    connect(format_, &MovieFormatForm::changed, this, &VariationsDialog::showOutput);
    connect(output_, &FileField::changed, this, &VariationsDialog::showState);
    showOutput();
}

void VariationsDialog::makeParts(bool hasSound, double seconds) {
    all_ = new QRadioButton(tr("A &movie of all %1 variations, each a chapter").arg(shown_.count));
    one_ = new QRadioButton(tr("A movie of &variation"));
    morph_ = new QRadioButton(tr("A movie from snapshot &A to snapshot B"));
    sheet_ = new QRadioButton(tr("A pi&cture of all variations"));
    all_->setChecked(true);
    morph_->setEnabled(shown_.snapshots[0] && shown_.snapshots[1]);
    number_ = new QSpinBox;
    number_->setRange(1, static_cast<int>(shown_.count));
    number_->setValue(static_cast<int>(shown_.chosen));
    number_->setAccessibleName(tr("Number of the variation"));
    seconds_ = secondsBox(tr("Seconds of each variation, or of the morph"), mostSeconds);
    seconds_->setMinimum(leastSeconds);
    seconds_->setValue(seconds);
    format_ = new MovieFormatForm(hasSound);
    inputs_ = new InputsBox(episode_.inputs, this);
    output_ = new FileField(tr("Result"), [this](const QString& present) {
        return newFileName(this, tr("Export variations"), present, QString());
    });
    output_->setText(folders_.of(FolderKind::movies) + QLatin1Char('/') +
                     QFileInfo(QString::fromStdString(episode_.fileName())).completeBaseName() +
                     tr(" variations"));
}

void VariationsDialog::layOut() {
    auto* chosen = new QHBoxLayout;
    chosen->addWidget(one_);
    chosen->addWidget(number_);
    chosen->addStretch(1);
    auto* form = new QFormLayout(this);
    form->addRow(all_);
    form->addRow(chosen);
    form->addRow(morph_);
    form->addRow(sheet_);
    form->addRow(tr("Seconds of &each:"), seconds_);
    form->addRow(tr("Format:"), format_);
    form->addRow(inputs_);
    form->addRow(tr("Fi&le:"), output_);
    auto* buttons = new QDialogButtonBox;
    accept_ = buttons->addButton(tr("E&xport"), QDialogButtonBox::AcceptRole);
    buttons->addButton(QDialogButtonBox::Cancel); // the last one that Tab reaches
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    form->addRow(buttons);
    accept_->setDefault(true);
}

void VariationsDialog::showOutput() {
    const auto extension = format_->preset().fileExtension();
    const QFileInfo name(output_->text());
    QString base = name.fileName();
    for (const char* ending : {".mp4", ".mov", ".png"})
        if (base.endsWith(QLatin1String(ending)))
            base.chop(4);
    base += sheet_->isChecked()
                ? QStringLiteral(".png")
                : QLatin1Char('.') +
                      QString::fromUtf8(extension.data(), static_cast<qsizetype>(extension.size()));
    output_->setText(name.path() + QLatin1Char('/') + base);
    format_->setEnabled(!sheet_->isChecked());
    seconds_->setEnabled(!sheet_->isChecked());
    showState();
}

void VariationsDialog::showState() {
    accept_->setEnabled(QDir::isAbsolutePath(output_->text()));
}

Order VariationsDialog::order() const {
    const std::filesystem::path output = output_->path().value_or(std::filesystem::path());
    folders_.keep(FolderKind::movies, QString::fromStdString(output.parent_path().string()));
    if (morph_->isChecked()) {
        EpisodeCopy episode = episode_;
        episode.settings = morphed(shown_, episode.settings, seconds_->value());
        return movieOrder({.episode = std::move(episode),
                           .format = format_->format(),
                           .duration = seconds_->value(),
                           .output = output});
    }
    VariationsRequest request{.episode = episode_,
                              .seed = shown_.seed,
                              .count = shown_.count,
                              .spread = shown_.spread,
                              .seconds = seconds_->value(),
                              .isMovie = !sheet_->isChecked(),
                              .format = format_->format(),
                              .output = output};
    request.episode.settings = shown_.center;
    if (one_->isChecked()) {
        request.first = number_->value();
        request.count = 1;
    }
    return variationsOrder(request);
}

} // namespace tarnwick::player
