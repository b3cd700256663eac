#include "player/ExportPanel/SaverActions.h"

#include "TarnwickBase/InstalledFiles.h"
#include "player/App/Background.h"
#include "player/ExportPanel/SaverDialog.h"
#include "player/Exports/SaverBundle.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <utility>

namespace tarnwick::player {
namespace {

struct Made {
    std::filesystem::path place;
    std::string error; // empty with a place
};

// A word of a shell command.
QString quoted(const std::filesystem::path& path) {
    QString text = QString::fromStdString(path.string());
    text.replace(QLatin1Char('\''), QStringLiteral("'\\''"));
    return QLatin1Char('\'') + text + QLatin1Char('\'');
}

} // namespace

SaverActions::SaverActions(Player& player, QMainWindow& window, Actions& actions, CopyOf copyOf)
    : QObject(&window), player_(player), window_(window), copyOf_(std::move(copyOf)) {
    actions.add(ActionMenu::file, tr("Save as sc&reen saver..."), {}, [this] { save(); });
}

void SaverActions::save() {
    const OpenDocument* document = player_.active();
    if (document == nullptr)
        return;
    const EpisodeCopy episode = copyOf_(*document);
    SaverDialog dialog(QString::fromStdString(episode.title), &window_);
    if (dialog.exec() != QDialog::Accepted)
        return;
    for (const std::string& remark : episode.inputs.remarks)
        player_.tell(QString::fromStdString(remark));
    inBackground(
        this,
        [episode, name = dialog.name().toStdString(), folder = dialog.folder()]() -> Made {
            try {
                return {.place = makeSaver(episode, name, folder)};
            } catch (const SaverBundleError& error) {
                return {.error = error.what()};
            }
        },
        [this](const Made& made) {
            if (made.error.empty())
                showSaved(made.place);
            else
                player_.tell(QString::fromStdString(made.error));
        });
}

void SaverActions::showSaved(const std::filesystem::path& bundle) {
    const QString command = quoted(installedFile(InstalledFile::saver)) +
                            QStringLiteral(" --bundle ") + quoted(bundle) +
                            QStringLiteral(" --root");
    auto* shown = new QMessageBox(
        QMessageBox::Information, tr("Screen saver"),
        tr("The screen saver is saved in %1.").arg(QString::fromStdString(bundle.string())),
        QMessageBox::Close, &window_);
    shown->setInformativeText(tr("XScreenSaver shows it with this line in the programs of "
                                 "~/.xscreensaver:\n%1")
                                  .arg(command));
    shown->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    shown->setAttribute(Qt::WA_DeleteOnClose);
    QPushButton* copy = shown->addButton(tr("&Copy line"), QMessageBox::ActionRole);
    QPushButton* attempt = shown->addButton(tr("&Show it"), QMessageBox::ActionRole);
    copy->disconnect(); // they do not close the box
    attempt->disconnect();
    connect(copy, &QPushButton::clicked, this,
            [command] { QGuiApplication::clipboard()->setText(command); });
    connect(attempt, &QPushButton::clicked, this, [bundle] {
        QProcess::startDetached(
            QString::fromStdString(installedFile(InstalledFile::saver).string()),
            {QStringLiteral("--bundle"), QString::fromStdString(bundle.string())});
    });
    shown->show();
}

} // namespace tarnwick::player
