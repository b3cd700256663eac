// Finds and replaces text in an editor, and goes to a line.
#pragma once

#include <QWidget>

class QCheckBox;
class QLabel;
class QLineEdit;

namespace tarnwick::player {

class EpisodeEditor;

// Hidden until one of the first functions shows it; Escape hides it. A text that is a number after
// ":" is a line.
class FindBar : public QWidget {
    Q_OBJECT

  public:
    explicit FindBar(QWidget* parent = nullptr);

    // Null: none. The bar does not own it.
    void setEditor(EpisodeEditor* editor);
    // Shows the bar with the selected word.
    void find();
    void goToLine();

  public slots:
    void findNext();
    void findPrevious();

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    bool search(bool forward, bool fromStart);
    bool isLine() const; // the text names a line
    void replace();
    void replaceAll();
    void report(const QString& text);
    void leave(); // to the editor

    EpisodeEditor* editor_ = nullptr;
    QLineEdit* text_;
    QLineEdit* replacement_;
    QCheckBox* matchesCase_;
    QCheckBox* isExpression_;
    QLabel* answer_;
};

} // namespace tarnwick::player
