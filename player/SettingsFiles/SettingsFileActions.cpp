#include "player/SettingsFiles/SettingsFileActions.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QMainWindow>
#include <QMenu>
#include <QPointer>
#include <array>
#include <utility>

namespace tarnwick::player {
namespace {

struct Row {
    SettingsPart part;
    const char* load;
    const char* save;
    const char* ending; // of the proposed name
};

constexpr std::array<Row, 3> rows{{
    {SettingsPart::all, "Load &settings...", "Save s&ettings as...", " settings"},
    {SettingsPart::values, "Load &values...", "Save v&alues as...", " values"},
    {SettingsPart::keys, "Load &keys...", "Save ke&ys as...", " keys"},
}};

QString filter() {
    return QObject::tr("Settings and keys (*.json);;All files (*)");
}

// Where the files of a document are proposed to be.
QString proposed(const Document& document, const char* ending) {
    const QString name = QString::fromStdString(document.title() + ending + ".json");
    return document.file()
               ? QString::fromStdString(document.file()->parent_path().string()) + '/' + name
               : name;
}

} // namespace

SettingsFileActions::SettingsFileActions(Player& player, QMainWindow& window, Actions& actions)
    : QObject(&window), player_(player), window_(window) {
    connect(&fileWork_, &FileWork::late, this, [this] {
        player_.tell(tr("The settings are not read or written yet: the file system does not "
                        "answer. Editing goes on."));
    });
    QMenu* menu = actions.submenu(ActionMenu::file, tr("Se&ttings"));
    for (const Row& row : rows)
        actions.add(menu, tr(row.load), [this, part = row.part] { loadByDialog(part); });
    menu->addSeparator();
    for (const Row& row : rows)
        actions.add(menu, tr(row.save), [this, part = row.part] { saveByDialog(part); });
    menu->addSeparator();
    actions.add(menu, tr("&Name of the saver..."), [this] { changeName(); });
}

void SettingsFileActions::load(const QString& file, SettingsPart part) {
    OpenDocument* document = player_.active();
    if (document == nullptr) {
        player_.tell(tr("Settings are for an open episode. None is open."));
        return;
    }
    struct Loaded {
        Settings settings;
        std::string error;
    };
    const auto begin = [document = QPointer<OpenDocument>(document), file, part] {
        const Settings present = document ? document->document().settings() : Settings{};
        return [present, file, part]() -> Loaded {
            try {
                return {loadedSettings(present, file.toStdString(), part), {}};
            } catch (const DocumentFileError& error) {
                return {{}, error.what()};
            }
        };
    };
    fileWork_.add(begin, [this, file, document = QPointer<OpenDocument>(document)](Loaded loaded) {
        if (!loaded.error.empty())
            player_.tell(QString::fromStdString(loaded.error));
        else if (document)
            take(*document, std::move(loaded.settings), file);
    });
}

void SettingsFileActions::take(OpenDocument& document, Settings next, const QString& file) {
    const auto misfits = next.misfits(document.document().episode()->params(), "The episode");
    document.endGesture();
    document.setSettings(std::move(next), "Load " + QFileInfo(file).fileName().toStdString());
    for (const std::string& sentence : misfits)
        player_.tell(QString::fromStdString(sentence));
}

void SettingsFileActions::loadByDialog(SettingsPart part) {
    const QString file = QFileDialog::getOpenFileName(&window_, tr("Load"), QString(), filter());
    if (!file.isEmpty())
        load(file, part);
}

void SettingsFileActions::saveByDialog(SettingsPart part) {
    const OpenDocument* document = player_.active();
    if (document == nullptr)
        return;
    const Settings settings = document->document().settings(); // of now, not after the dialog
    QString file = QFileDialog::getSaveFileName(
        &window_, tr("Save"),
        proposed(document->document(), rows[static_cast<std::size_t>(part)].ending), filter());
    if (file.isEmpty())
        return;
    if (QFileInfo(file).suffix().isEmpty())
        file += QStringLiteral(".json");
    fileWork_.add(
        [settings, file, part] {
            return [settings, file, part]() -> std::string {
                try {
                    saveSettings(settings, file.toStdString(), part);
                    return {};
                } catch (const DocumentFileError& error) {
                    return error.what();
                }
            };
        },
        [this](const std::string& error) {
            if (!error.empty())
                player_.tell(QString::fromStdString(error));
        });
}

void SettingsFileActions::changeName() {
    OpenDocument* document = player_.active();
    if (document == nullptr)
        return;
    Settings settings = document->document().settings();
    bool isAccepted = false;
    const QString name = QInputDialog::getText(
        &window_, tr("Name of the saver"), tr("The title of the saver's window:"),
        QLineEdit::Normal, QString::fromStdString(settings.name), &isAccepted);
    if (!isAccepted || document != player_.active())
        return;
    settings.name = name.toStdString();
    document->setSettings(std::move(settings), "Name the saver");
}

} // namespace tarnwick::player
