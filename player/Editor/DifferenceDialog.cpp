#include "player/Editor/DifferenceDialog.h"

#include "player/Writing/TextDiff.h"

#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextBlock>
#include <QVBoxLayout>
#include <algorithm>
#include <iterator>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr int numberWidth = 5; // digits of a line's number

// The colour of the view's background with a share of another one, in light and dark palettes.
QColor mixed(const QPalette& palette, const QColor& with) {
    constexpr double share = 0.28;
    const QColor base = palette.color(QPalette::Base);
    const auto part = [](int a, int b) { return static_cast<int>(a + (b - a) * share); };
    return {part(base.red(), with.red()), part(base.green(), with.green()),
            part(base.blue(), with.blue())};
}

QString numberText(std::size_t number) {
    return (number > 0 ? QString::number(number) : QString()).rightJustified(numberWidth);
}

} // namespace

DifferenceDialog::DifferenceDialog(const QString& title, std::string mine, std::string file,
                                   QWidget* parent)
    : QDialog(parent), mine_(std::move(mine)), file_(std::move(file)) {
    setWindowTitle(tr("%1: two versions").arg(title));
    summary_ = new QLabel;
    summary_->setWordWrap(true);
    lines_ = new QPlainTextEdit;
    lines_->setReadOnly(true);
    lines_->setLayoutDirection(Qt::LeftToRight);
    lines_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    lines_->setLineWrapMode(QPlainTextEdit::NoWrap);
    lines_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    lines_->setAccessibleName(tr("Differences"));
    auto* previous = new QPushButton(tr("&Previous difference"));
    auto* next = new QPushButton(tr("&Next difference"));
    previous->setShortcut(QKeySequence(tr("Shift+F7")));
    next->setShortcut(QKeySequence(tr("F7")));
    connect(previous, &QPushButton::clicked, this, [this] { goToDifference(-1); });
    connect(next, &QPushButton::clicked, this, [this] { goToDifference(1); });
    auto* buttons = new QDialogButtonBox;
    auto* take = buttons->addButton(tr("&Take the file's"), QDialogButtonBox::AcceptRole);
    auto* keep = buttons->addButton(tr("&Keep mine"), QDialogButtonBox::DestructiveRole);
    auto* later = buttons->addButton(tr("&Decide later"), QDialogButtonBox::RejectRole);
    take->setToolTip(tr("The file's text replaces this one. Undo brings this one back."));
    keep->setToolTip(tr("This text stays. Saving replaces the file's text."));
    later->setDefault(true);
    connect(take, &QPushButton::clicked, this, [this] {
        emit fileTaken();
        accept();
    });
    connect(keep, &QPushButton::clicked, this, [this] {
        emit mineKept();
        accept();
    });
    connect(later, &QPushButton::clicked, this, &QDialog::reject);
    auto* row = new QHBoxLayout;
    row->addWidget(previous);
    row->addWidget(next);
    row->addStretch(1);
    row->addWidget(buttons);
    auto* column = new QVBoxLayout(this);
    column->addWidget(summary_);
    column->addWidget(lines_, 1);
    column->addLayout(row);
    resize(860, 560);
    compare();
}

void DifferenceDialog::setFileText(std::string file) {
    file_ = std::move(file);
    compare();
}

void DifferenceDialog::compare() {
    added_.clear();
    removed_.clear();
    starts_.clear();
    QString all;
    bool wasSame = true;
    int line = 0;
    for (const DiffLine& one : textDiff(mine_, file_)) {
        const bool isSame = one.kind == DiffLine::Kind::same;
        if (!isSame && wasSame)
            starts_.push_back(line);
        wasSame = isSame;
        if (one.kind == DiffLine::Kind::added)
            added_.push_back(line);
        else if (!isSame)
            removed_.push_back(line);
        const QChar sign = isSame ? u' ' : one.kind == DiffLine::Kind::added ? u'+' : u'-';
        all += numberText(one.before) + numberText(one.after) + u' ' + sign + u' ' +
               QString::fromUtf8(one.text.data(), static_cast<qsizetype>(one.text.size()))
                   .remove(u'\r') +
               u'\n';
        ++line;
    }
    lines_->setPlainText(all);
    summary_->setText(
        tr("The file and this text differ. Lines with - are only in this text (%1), lines with + "
           "only in the file (%2).")
            .arg(removed_.size())
            .arg(added_.size()));
    colour();
    goToDifference(1);
}

void DifferenceDialog::colour() {
    QList<QTextEdit::ExtraSelection> selections;
    const auto mark = [&](const std::vector<int>& lines, const QColor& colour) {
        for (const int line : lines) {
            QTextEdit::ExtraSelection one;
            one.format.setBackground(mixed(palette(), colour));
            one.format.setProperty(QTextFormat::FullWidthSelection, true);
            one.cursor = QTextCursor(lines_->document()->findBlockByNumber(line));
            selections.append(one);
        }
    };
    mark(removed_, QColor(220, 50, 50));
    mark(added_, QColor(40, 170, 70));
    lines_->setExtraSelections(selections);
}

// The next difference after the cursor, or before it; around the ends.
void DifferenceDialog::goToDifference(int step) {
    if (starts_.empty())
        return;
    const int at = lines_->textCursor().blockNumber();
    int target = step > 0 ? starts_.front() : starts_.back();
    if (step > 0) {
        const auto found = std::upper_bound(starts_.begin(), starts_.end(), at);
        target = found == starts_.end() ? starts_.front() : *found;
    } else {
        const auto found = std::lower_bound(starts_.begin(), starts_.end(), at);
        target = found == starts_.begin() ? starts_.back() : *std::prev(found);
    }
    lines_->setTextCursor(QTextCursor(lines_->document()->findBlockByNumber(target)));
    lines_->centerCursor();
}

} // namespace tarnwick::player
