// Completion and help in an editor: when they appear, and what the keys do meanwhile.
#pragma once

#include "player/Writing/Completion.h"

#include <QObject>
#include <QRect>
#include <functional>

class QKeyEvent;
class QsciScintilla;

namespace tarnwick::player {

class CallTip;
class CompletionPopup;

class WritingAid : public QObject {
    Q_OBJECT

  public:
    // `messageAt` gives the message of a problem at a byte of the text; empty without one.
    WritingAid(QsciScintilla& editor, std::function<QString(int)> messageAt);

    // Before the editor takes a key: true if it is not for the editor.
    bool takesKey(QKeyEvent* event);

  public slots:
    void complete();     // on request
    void showFunction(); // help for the function at the cursor
    void hide();

  protected:
    bool eventFilter(QObject* object, QEvent* event) override;

  private:
    void afterCharacter(int character);
    void afterChange();
    void offer(CompletionCause cause);
    void take(const Completion& completion);
    void followCall();
    void showAtPointer(int position);
    QRect rectangleOf(int position) const; // of a character, in the editor's viewport
    QRect onScreen(const QRect& inViewport) const;

    QsciScintilla& editor_;
    std::function<QString(int)> messageAt_;
    CompletionPopup* popup_;
    CallTip* tip_;
    bool isTipForCall_ = false;    // it follows the arguments of a call
    bool isTipForPointer_ = false; // it hides when the pointer leaves
    bool isTaking_ = false;
};

} // namespace tarnwick::player
