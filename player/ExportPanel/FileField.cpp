#include "player/ExportPanel/FileField.h"

#include <QFileDialog>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr int shownLetters = 44; // of a path, at least

} // namespace

FileField::FileField(const QString& name, std::function<QString(const QString& present)> choose,
                     QWidget* parent)
    : QWidget(parent) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    line_ = new QLineEdit;
    line_->setAccessibleName(name);
    line_->setMinimumWidth(shownLetters * line_->fontMetrics().averageCharWidth());
    setFocusProxy(line_);
    auto* button = new QPushButton(tr("Choose..."));
    button->setAccessibleName(tr("Choose: %1").arg(name));
    button->setAutoDefault(false);
    row->addWidget(line_, 1);
    row->addWidget(button);
    connect(line_, &QLineEdit::textChanged, this, &FileField::changed);
    connect(button, &QPushButton::clicked, this, [this, choose = std::move(choose)] {
        if (const QString chosen = choose(text()); !chosen.isEmpty())
            setText(chosen);
    });
}

void FileField::setText(const QString& path) {
    line_->setText(path);
}

QString FileField::text() const {
    return line_->text().trimmed();
}

std::optional<std::filesystem::path> FileField::path() const {
    if (text().isEmpty())
        return std::nullopt;
    return std::filesystem::path(text().toStdString());
}

QString newFileName(QWidget* parent, const QString& title, const QString& present,
                    const QString& filter) {
    return QFileDialog::getSaveFileName(parent, title, present, filter, nullptr,
                                        QFileDialog::DontConfirmOverwrite);
}

} // namespace tarnwick::player
