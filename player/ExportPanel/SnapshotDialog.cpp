#include "player/ExportPanel/SnapshotDialog.h"

#include "player/ExportPanel/FileField.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>

namespace tarnwick::player {
namespace {

constexpr int mostSide = 16384; // pixels, as the command line has it

QSpinBox* side(const QString& name, int value) {
    auto* box = new QSpinBox;
    box->setRange(1, mostSide);
    box->setValue(value);
    box->setAccessibleName(name);
    return box;
}

} // namespace

SnapshotDialog::SnapshotDialog(double time, const QString& file, QWidget* parent)
    : QDialog(parent) {
    setWindowTitle(tr("Save snapshot at size"));
    width_ = side(tr("Width in pixels"), 3840);
    height_ = side(tr("Height in pixels"), 2160);
    alpha_ = new QCheckBox(tr("Keep the episode's &alpha"));
    file_ = new FileField(tr("Picture"), [this](const QString& present) {
        return newFileName(this, tr("Save snapshot"), present, tr("Pictures (*.png)"));
    });
    file_->setText(file);
    auto* sizes = new QHBoxLayout;
    sizes->addWidget(width_);
    sizes->addWidget(new QLabel(QStringLiteral("\u00d7")));
    sizes->addWidget(height_);
    sizes->addStretch(1);
    auto* label = new QLabel(tr("&Size:"));
    label->setBuddy(width_);
    auto* form = new QFormLayout(this);
    form->addRow(tr("Time:"), new QLabel(tr("%1 s").arg(time, 0, 'f', 3)));
    form->addRow(label, sizes);
    form->addRow(QString(), alpha_);
    form->addRow(tr("&Picture:"), file_);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Save | QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(file_, &FileField::changed, this, [this, buttons] {
        buttons->button(QDialogButtonBox::Save)->setEnabled(QDir::isAbsolutePath(file_->text()));
    });
    form->addRow(buttons);
}

PixelSize SnapshotDialog::size() const {
    return PixelSize::of(width_->value(), height_->value()).value();
}

bool SnapshotDialog::hasAlpha() const {
    return alpha_->isChecked();
}

QString SnapshotDialog::file() const {
    const QString ending = QStringLiteral(".png");
    return file_->text().endsWith(ending, Qt::CaseInsensitive) ? file_->text()
                                                               : file_->text() + ending;
}

} // namespace tarnwick::player
