#include "player/ExportPanel/SaverDialog.h"

#include "TarnwickCore/Episode/FileNames.h"
#include "player/Exports/SaverBundle.h"
#include "saver/Installing/InstalledSavers.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace tarnwick::player {

SaverDialog::SaverDialog(const QString& name, QWidget* parent) : QDialog(parent) {
    setWindowTitle(tr("Save as screen saver"));
    name_ = new QLineEdit(name);
    install_ = new QCheckBox(tr("&Install it for XScreenSaver and mate-screensaver"));
    install_->setToolTip(tr("Adds it to the lists of these programs. An installed screen saver of "
                            "this name is replaced; tarnwick saver uninstall removes it."));
    place_ = new QLabel;
    place_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    auto* note =
        new QLabel(tr("The screen saver has the episode, its values, its keys and copies of "
                      "the files of its channels as they are now."));
    note->setWordWrap(true);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Save | QDialogButtonBox::Cancel);
    auto* form = new QFormLayout(this);
    form->addRow(note);
    form->addRow(tr("&Name:"), name_);
    form->addRow(install_);
    form->addRow(tr("Folder:"), place_);
    form->addRow(buttons);
    const auto showState = [this, buttons] {
        place_->setText(QString::fromStdString(folder().string()));
        QPushButton* save = buttons->button(QDialogButtonBox::Save);
        save->setEnabled(!this->name().isEmpty());
        save->setText(isInstalled() ? tr("&Save and install") : tr("&Save"));
    };
    connect(name_, &QLineEdit::textChanged, this, showState);
    connect(install_, &QCheckBox::toggled, this, showState);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    showState();
}

QString SaverDialog::name() const {
    return name_->text().trimmed();
}

bool SaverDialog::isInstalled() const {
    return install_->isChecked();
}

std::filesystem::path SaverDialog::folder() const {
    const std::string wanted = name().toStdString();
    const std::filesystem::path file =
        isInstalled() ? saverId(wanted) + ".saver" : FileNames::safe(wanted);
    return (saversFolder() / file).replace_extension(".saver");
}

} // namespace tarnwick::player
