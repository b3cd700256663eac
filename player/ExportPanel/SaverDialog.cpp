#include "player/ExportPanel/SaverDialog.h"

#include "TarnwickCore/Episode/FileNames.h"
#include "player/Exports/SaverBundle.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace tarnwick::player {

SaverDialog::SaverDialog(const QString& name, QWidget* parent) : QDialog(parent) {
    setWindowTitle(tr("Save as screen saver"));
    name_ = new QLineEdit(name);
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
    form->addRow(tr("Folder:"), place_);
    form->addRow(buttons);
    const auto showState = [this, buttons] {
        place_->setText(QString::fromStdString(folder().string()));
        buttons->button(QDialogButtonBox::Save)->setEnabled(!this->name().isEmpty());
    };
    connect(name_, &QLineEdit::textChanged, this, showState);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    showState();
}

QString SaverDialog::name() const {
    return name_->text().trimmed();
}

std::filesystem::path SaverDialog::folder() const {
    return (saversFolder() / FileNames::safe(name().toStdString())).replace_extension(".saver");
}

} // namespace tarnwick::player
