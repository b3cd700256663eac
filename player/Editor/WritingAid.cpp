#include "player/Editor/WritingAid.h"

#include "player/Editor/CallTip.h"
#include "player/Editor/CompletionPopup.h"
#include "player/Editor/TextBytes.h"
#include "player/Writing/CallHelp.h"

#include <Qsci/qsciscintilla.h>

#include <QKeyEvent>
#include <QTimer>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr int pointerPause = 600; // milliseconds over a word

} // namespace

WritingAid::WritingAid(QsciScintilla& editor, std::function<QString(int)> messageAt)
    : QObject(&editor), editor_(editor), messageAt_(std::move(messageAt)),
      popup_(new CompletionPopup(editor)), tip_(new CallTip(&editor)) {
    connect(popup_, &CompletionPopup::chosen, this, &WritingAid::take);
    connect(&editor, &QsciScintillaBase::SCN_CHARADDED, this, &WritingAid::afterCharacter);
    connect(&editor, &QsciScintilla::cursorPositionChanged, this, &WritingAid::followCall);
    connect(&editor, &QsciScintilla::textChanged, this, &WritingAid::afterChange);
    editor.SendScintilla(QsciScintillaBase::SCI_SETMOUSEDWELLTIME,
                         static_cast<unsigned long>(pointerPause));
    connect(&editor, &QsciScintillaBase::SCN_DWELLSTART, this,
            [this](int position) { showAtPointer(position); });
    connect(&editor, &QsciScintillaBase::SCN_DWELLEND, this, [this] {
        if (isTipForPointer_)
            tip_->hide();
    });
    editor.installEventFilter(this);
    editor.viewport()->installEventFilter(this);
}

// The list takes these keys itself; the tip only hides.
bool WritingAid::takesKey(QKeyEvent* event) {
    const int key = event->key();
    if (popup_->isShown() && (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Tab ||
                              key == Qt::Key_Escape)) {
        event->ignore();
        return true;
    }
    if (key == Qt::Key_Escape && tip_->isVisible()) {
        tip_->hide();
        isTipForCall_ = false;
        event->accept();
        return true;
    }
    if (popup_->isShown() && (key == Qt::Key_Left || key == Qt::Key_Right))
        popup_->hide();
    return false;
}

bool WritingAid::eventFilter(QObject* object, QEvent* event) {
    const bool ends = event->type() == QEvent::Hide || event->type() == QEvent::Wheel ||
                      event->type() == QEvent::MouseButtonPress ||
                      (event->type() == QEvent::FocusOut && !popup_->isShown());
    if (ends)
        tip_->hide();
    return QObject::eventFilter(object, event);
}

void WritingAid::hide() {
    popup_->hide();
    tip_->hide();
}

void WritingAid::complete() {
    offer(CompletionCause::request);
}

void WritingAid::afterCharacter(int character) {
    if (isTaking_)
        return;
    const char one = static_cast<char>(character);
    const bool isWord = (one >= 'a' && one <= 'z') || (one >= 'A' && one <= 'Z') ||
                        (one >= '0' && one <= '9') || one == '_';
    if (isWord || one == '.' || one == ':' || one == '[' || one == '>')
        offer(CompletionCause::typing);
    else
        popup_->hide();
    isTipForCall_ |= one == '(' || one == ',';
    followCall();
}

// Deleting narrows or widens a list that is shown.
void WritingAid::afterChange() {
    if (popup_->isShown() && !isTaking_)
        QTimer::singleShot(0, this, [this] {
            if (popup_->isShown())
                offer(CompletionCause::typing);
        });
}

void WritingAid::offer(CompletionCause cause) {
    const auto position = cursorByte(editor_);
    Completions found = completionsAt(textOf(editor_), position, cause);
    if (found.list.empty()) {
        popup_->hide();
        return;
    }
    // The only name completes the word without asking.
    if (cause == CompletionCause::request && found.list.size() == 1) {
        take(found.list[0]);
        return;
    }
    popup_->show(std::move(found.list), rectangleOf(static_cast<int>(found.from)));
}

// Replaces the word at the cursor. A function also gets its parenthesis.
void WritingAid::take(const Completion& completion) {
    const std::string text = textOf(editor_);
    const auto at = cursorByte(editor_);
    const std::size_t from = completionsAt(text, at, CompletionCause::request).from;
    const bool isCall =
        completion.detail.find('(') != std::string::npos && (at >= text.size() || text[at] != '(');
    isTaking_ = true;
    setCursorByte(editor_, replaceBytes(editor_, from, at, completion.name + (isCall ? "(" : "")));
    isTaking_ = false;
    if (isCall) {
        isTipForCall_ = true;
        followCall();
    }
}

// Shows the call around the cursor while it has one.
void WritingAid::followCall() {
    if (!isTipForCall_ || isTaking_)
        return;
    const auto at = cursorByte(editor_);
    const auto help = callAround(textOf(editor_), at);
    if (!help) {
        isTipForCall_ = false;
        tip_->hide();
        return;
    }
    isTipForPointer_ = false;
    QRect place = rectangleOf(static_cast<int>(help->at));
    place.setBottom(rectangleOf(static_cast<int>(at)).bottom());
    tip_->showHelp(*help, onScreen(place));
}

void WritingAid::showFunction() {
    const auto at = cursorByte(editor_);
    const auto help = functionAt(textOf(editor_), at);
    if (!help) {
        tip_->hide();
        return;
    }
    isTipForCall_ = help->argument.has_value();
    isTipForPointer_ = false;
    tip_->showHelp(*help, onScreen(rectangleOf(static_cast<int>(help->at))));
}

void WritingAid::showAtPointer(int position) {
    if (position < 0 || popup_->isShown() || isTipForCall_ || !editor_.isActiveWindow())
        return;
    if (const QString message = messageAt_(position); !message.isEmpty()) {
        isTipForPointer_ = true;
        tip_->showMessage(message, onScreen(rectangleOf(position)));
        return;
    }
    const std::string text = textOf(editor_);
    const auto help = functionAt(text, static_cast<std::size_t>(position));
    if (!help || help->argument) // only over the name
        return;
    isTipForPointer_ = true;
    tip_->showHelp(*help, onScreen(rectangleOf(static_cast<int>(help->at))));
}

QRect WritingAid::rectangleOf(int position) const {
    const auto ask = [&](unsigned int message) {
        return static_cast<int>(editor_.SendScintilla(message, 0UL, static_cast<long>(position)));
    };
    const auto line = static_cast<unsigned long>(editor_.SendScintilla(
        QsciScintillaBase::SCI_LINEFROMPOSITION, static_cast<unsigned long>(position)));
    const auto height =
        static_cast<int>(editor_.SendScintilla(QsciScintillaBase::SCI_TEXTHEIGHT, line));
    return {ask(QsciScintillaBase::SCI_POINTXFROMPOSITION),
            ask(QsciScintillaBase::SCI_POINTYFROMPOSITION), 1, height};
}

QRect WritingAid::onScreen(const QRect& inViewport) const {
    return {editor_.viewport()->mapToGlobal(inViewport.topLeft()), inViewport.size()};
}

} // namespace tarnwick::player
