// The text editor of an episode.
#pragma once

#include "TarnwickCore/Finding.h"

#include <Qsci/qsciscintilla.h>

#include <string>
#include <vector>

namespace tarnwick::player {

class MSLLexer;

class EpisodeEditor : public QsciScintilla {
    Q_OBJECT

  public:
    explicit EpisodeEditor(QWidget* parent = nullptr);

    std::string episodeText() const; // UTF-8
    // Replaces the text. The change can be undone unless it is the first text.
    void setEpisodeText(const std::string& text);

    // Underlines the findings in the text and marks their lines in the margin. Replaces the last
    // ones.
    void setFindings(const std::vector<Finding>& findings);
    // Moves the cursor to a place; both count from 1.
    void goTo(int line, int column);
    void setDark(bool isDark);

  public slots:
    void toggleComments();

  signals:
    // The author changed the text.
    void edited();

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void underline(const Finding& finding);

    MSLLexer* lexer_; // owned as a child
    bool isReplacing_ = false;
};

} // namespace tarnwick::player
