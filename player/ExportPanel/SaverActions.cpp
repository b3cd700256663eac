#include "player/ExportPanel/SaverActions.h"

#include "TarnwickBase/InstalledFiles.h"
#include "player/App/Background.h"
#include "player/ExportPanel/SaverDialog.h"
#include "player/Exports/SaverBundle.h"
#include "saver/Installing/SaverPlaces.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <utility>

namespace tarnwick::player {
namespace {

// A word of a shell command.
QString quoted(const std::filesystem::path& path) {
    QString text = QString::fromStdString(path.string());
    text.replace(QLatin1Char('\''), QStringLiteral("'\\''"));
    return QLatin1Char('\'') + text + QLatin1Char('\'');
}

// Why a saver of this document would show an error; empty if it would not.
QString obstacle(const OpenDocument& document) {
    const CompileResult* result = document.result();
    if (result == nullptr || result->revision != document.document().revision())
        return QObject::tr("The episode is still being compiled.");
    return result->program ? QString()
                           : QObject::tr("The episode has errors; an installed saver needs one "
                                         "that compiles.");
}

} // namespace

struct SaverActions::Made {
    std::filesystem::path bundle;
    bool isInstalled = false;
    std::vector<std::string> remarks{}; // of the installation: sentences
    std::string error{};                // empty with a bundle
};

SaverActions::SaverActions(Player& player, QMainWindow& window, Actions& actions, CopyOf copyOf)
    : QObject(&window), player_(player), window_(window), copyOf_(std::move(copyOf)) {
    actions.add(ActionMenu::file, tr("Save as screen sa&ver..."), {}, [this] { save(); });
}

void SaverActions::save() {
    const OpenDocument* document = player_.active();
    if (document == nullptr)
        return;
    const EpisodeCopy episode = copyOf_(*document);
    const QString reason = player_.device() != nullptr ? obstacle(*document) : QString();
    SaverDialog dialog(QString::fromStdString(episode.title), &window_);
    if (dialog.exec() != QDialog::Accepted)
        return;
    if (dialog.isInstalled() && !reason.isEmpty())
        return player_.tell(reason);
    for (const std::string& remark : episode.inputs.remarks)
        player_.tell(QString::fromStdString(remark));
    inBackground(
        this,
        [episode, isInstalled = dialog.isInstalled(), name = dialog.name().toStdString(),
         folder = dialog.folder()] {
            return isInstalled ? installed(episode, name) : made(episode, name, folder);
        },
        [this](const Made& saver) {
            if (saver.error.empty())
                show(saver);
            else
                player_.tell(QString::fromStdString(saver.error));
        });
}

SaverActions::Made SaverActions::made(const EpisodeCopy& episode, const std::string& name,
                                      const std::filesystem::path& folder) {
    try {
        return {.bundle = makeSaver(episode, name, folder)};
    } catch (const SaverBundleError& error) {
        return {.error = error.what()};
    }
}

SaverActions::Made SaverActions::installed(const EpisodeCopy& episode, const std::string& name) {
    try {
        InstallReport report = installEpisode(episode, name, saverPlaces());
        return {.bundle = std::move(report.bundle),
                .isInstalled = true,
                .remarks = std::move(report.remarks)};
    } catch (const InstallError& error) {
        return {.error = error.what()};
    }
}

void SaverActions::show(const Made& saver) {
    const QString bundle = QString::fromStdString(saver.bundle.string());
    const QString command = quoted(installedFile(InstalledFile::saver)) +
                            QStringLiteral(" --bundle ") + quoted(saver.bundle) +
                            QStringLiteral(" --root");
    auto* shown =
        new QMessageBox(QMessageBox::Information, tr("Screen saver"),
                        saver.isInstalled ? tr("The screen saver is installed in %1.").arg(bundle)
                                          : tr("The screen saver is saved in %1.").arg(bundle),
                        QMessageBox::Close, &window_);
    QStringList lines;
    for (const std::string& remark : saver.remarks)
        lines << QString::fromStdString(remark);
    if (!saver.isInstalled)
        lines << tr("XScreenSaver shows it with this line in the programs of ~/.xscreensaver:")
              << command;
    shown->setInformativeText(lines.join(QLatin1Char('\n')));
    shown->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    shown->setAttribute(Qt::WA_DeleteOnClose);
    // The buttons do not close the box.
    const auto addButton = [&](const QString& text, const std::function<void()>& press) {
        QPushButton* button = shown->addButton(text, QMessageBox::ActionRole);
        button->disconnect();
        connect(button, &QPushButton::clicked, this, press);
    };
    if (!saver.isInstalled)
        addButton(tr("&Copy line"), [command] { QGuiApplication::clipboard()->setText(command); });
    addButton(tr("&Show it"), [bundle] {
        QProcess::startDetached(
            QString::fromStdString(installedFile(InstalledFile::saver).string()),
            {QStringLiteral("--bundle"), bundle});
    });
    shown->show();
}

} // namespace tarnwick::player
