// The text editor of an episode.
#pragma once

#include "TarnwickCore/Finding.h"

#include <Qsci/qsciscintilla.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick::player {

class MSLLexer;
class WritingAid;

class EpisodeEditor : public QsciScintilla {
    Q_OBJECT

  public:
    explicit EpisodeEditor(QWidget* parent = nullptr);

    std::string episodeText() const; // UTF-8
    // Replaces the text where it differs. The change can be undone unless it is the first text.
    void setEpisodeText(const std::string& text);

    // Underlines the findings in the text and marks their lines in the margin. Replaces the last
    // ones.
    void setFindings(const std::vector<Finding>& findings);
    // Moves the cursor to a place; both count from 1, the column in bytes.
    void goTo(int line, int column);
    // The message and hint of the finding that underlines the byte `at`; empty without one.
    QString messageAt(int at) const;
    void setDark(bool isDark);

  public slots:
    void toggleComments();
    void complete();     // the word at the cursor
    void showFunction(); // help for the function at the cursor
    void goToNextProblem();

  signals:
    // The author changed the text.
    void edited();

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;

  private:
    void underline(const Finding& finding);
    int indexOf(int line, std::int64_t column) const;
    void typeClosingBrace();

    MSLLexer* lexer_;               // owned as a child
    WritingAid* aid_;               // the same
    std::vector<Finding> findings_; // those that are underlined
    bool isReplacing_ = false;
};

} // namespace tarnwick::player
