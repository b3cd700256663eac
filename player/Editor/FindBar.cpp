#include "player/Editor/FindBar.h"

#include "player/Editor/EpisodeEditor.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace tarnwick::player {

FindBar::FindBar(QWidget* parent) : QWidget(parent) {
    auto* rows = new QGridLayout(this);
    rows->setContentsMargins(6, 3, 6, 3);
    rows->setColumnStretch(0, 1);
    const auto entry = [&](const QString& hint, int row) {
        auto* made = new QLineEdit;
        made->setPlaceholderText(hint);
        made->setAccessibleName(hint);
        rows->addWidget(made, row, 0);
        return made;
    };
    const auto box = [&](const QString& text, int column) {
        auto* made = new QCheckBox(text);
        rows->addWidget(made, 0, column);
        return made;
    };
    const auto button = [&](const QString& text, int row, int column, void (FindBar::*run)()) {
        auto* made = new QPushButton(text);
        rows->addWidget(made, row, column);
        connect(made, &QPushButton::clicked, this, run);
    };
    text_ = entry(tr("Find, or :line"), 0);
    replacement_ = entry(tr("Replace with"), 1);
    button(tr("Previ&ous"), 0, 1, &FindBar::findPrevious);
    button(tr("&Next"), 0, 2, &FindBar::findNext);
    matchesCase_ = box(tr("&Case"), 3);
    isExpression_ = box(tr("E&xpression"), 4);
    button(tr("&Replace"), 1, 1, &FindBar::replace);
    button(tr("Replace &all"), 1, 2, &FindBar::replaceAll);
    answer_ = new QLabel;
    rows->addWidget(answer_, 1, 3, 1, 2);
    connect(text_, &QLineEdit::returnPressed, this, &FindBar::findNext);
    connect(replacement_, &QLineEdit::returnPressed, this, &FindBar::replace);
    connect(text_, &QLineEdit::textEdited, this, [this] { report({}); });
    hide();
}

void FindBar::setEditor(EpisodeEditor* editor) {
    editor_ = editor;
}

void FindBar::find() {
    if (editor_ != nullptr && editor_->hasSelectedText() &&
        !editor_->selectedText().contains(u'\n'))
        text_->setText(editor_->selectedText());
    show();
    text_->setFocus();
    text_->selectAll();
}

void FindBar::goToLine() {
    show();
    text_->setText(QStringLiteral(":"));
    text_->setFocus();
}

bool FindBar::isLine() const {
    bool isNumber = false;
    text_->text().mid(1).toInt(&isNumber);
    return isNumber && text_->text().startsWith(u':');
}

void FindBar::findNext() {
    if (!isLine() || editor_ == nullptr) {
        search(true, false);
        return;
    }
    editor_->goTo(text_->text().mid(1).toInt(), 1);
    text_->clear();
    leave();
}

void FindBar::findPrevious() {
    search(false, false);
}

// Searches from the cursor or from the start of the text, around its end.
bool FindBar::search(bool forward, bool fromStart) {
    if (editor_ == nullptr || text_->text().isEmpty())
        return false;
    int line = -1, column = -1, toLine = 0, toColumn = 0;
    if (fromStart)
        line = column = 0;
    else if (!forward && editor_->hasSelectedText())
        editor_->getSelection(&line, &column, &toLine, &toColumn);
    const bool isFound =
        editor_->findFirst(text_->text(), isExpression_->isChecked(), matchesCase_->isChecked(),
                           false, !fromStart, forward, line, column, true, false, true);
    report(isFound ? QString() : tr("Not found"));
    return isFound;
}

void FindBar::replace() {
    if (editor_ == nullptr)
        return;
    int line = 0, column = 0, toLine = 0, toColumn = 0;
    editor_->getSelection(&line, &column, &toLine, &toColumn);
    if (editor_->hasSelectedText() && !isLine()) {
        editor_->setCursorPosition(line, column);
        if (search(true, false))
            editor_->replace(replacement_->text());
    }
    search(true, false);
}

// One change that can be undone.
void FindBar::replaceAll() {
    if (editor_ == nullptr || isLine())
        return;
    int count = 0;
    const int most = editor_->length() + 1; // an expression may match nothing again and again
    editor_->beginUndoAction();
    for (bool found = search(true, true); found && count < most; found = editor_->findNext()) {
        editor_->replace(replacement_->text());
        ++count;
    }
    editor_->endUndoAction();
    report(tr("%1 replaced").arg(count));
}

void FindBar::report(const QString& text) {
    answer_->setText(text);
}

void FindBar::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Escape) {
        QWidget::keyPressEvent(event);
        return;
    }
    leave();
}

void FindBar::leave() {
    hide();
    if (editor_ != nullptr)
        editor_->setFocus();
}

} // namespace tarnwick::player
