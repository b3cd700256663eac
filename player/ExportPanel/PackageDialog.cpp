#include "player/ExportPanel/PackageDialog.h"

#include "TarnwickCore/SwiftUIExport.h"
#include "player/ExportPanel/FileField.h"
#include "player/ExportPanel/LastFolders.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <utility>

namespace tarnwick::player {

namespace {

// One sentence why there is no package of the episode; empty if there is one.
QString obstacle(const EpisodeCopy& episode) {
    try {
        SwiftUIExport::make(episode.text, episode.title);
        return {};
    } catch (const SwiftUIExport::Problem& problem) {
        return QString::fromUtf8(problem.what());
    }
}

} // namespace

PackageDialog::PackageDialog(LastFolders& folders, EpisodeCopy episode, const QString& title,
                             QWidget* parent)
    : QDialog(parent), folders_(folders), episode_(std::move(episode)) {
    setWindowTitle(tr("Save as SwiftUI package"));
    title_ = new QLineEdit(title);
    folder_ = new FileField(tr("Folder of the package"), [this](const QString& present) {
        return newFileName(this, tr("Folder of the package"), present, QString());
    });
    folder_->setText(folders_.of(FolderKind::packages) + QLatin1Char('/') +
                     QString::fromStdString(episode_.fileName()).section(QLatin1Char('.'), 0, -2));
    const QString reason = obstacle(episode_);
    auto* note =
        new QLabel(reason.isEmpty() ? tr("A Swift package with a view for SwiftUI.") : reason);
    note->setWordWrap(true);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Save | QDialogButtonBox::Cancel);
    auto* form = new QFormLayout(this);
    form->addRow(note);
    form->addRow(tr("&Title:"), title_);
    form->addRow(tr("&Folder:"), folder_);
    form->addRow(buttons);
    const auto showState = [this, buttons, reason] {
        buttons->button(QDialogButtonBox::Save)
            ->setEnabled(reason.isEmpty() && !title_->text().trimmed().isEmpty() &&
                         QDir::isAbsolutePath(folder_->text()));
    };
    connect(title_, &QLineEdit::textChanged, this, showState);
    connect(folder_, &FileField::changed, this, showState);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    showState();
}

PackageRequest PackageDialog::request() const {
    PackageRequest request{.episode = episode_,
                           .title = title_->text().trimmed().toStdString(),
                           .output = folder_->path().value_or(std::filesystem::path())};
    folders_.keep(FolderKind::packages,
                  QString::fromStdString(request.output.parent_path().string()));
    return request;
}

} // namespace tarnwick::player
