// Colours an episode's text in the editor, by MSLSyntax.
#pragma once

#include <Qsci/qscilexercustom.h>

#include <cstddef>
#include <string_view>
#include <vector>

namespace tarnwick::player {

class MSLLexer : public QsciLexerCustom {
    Q_OBJECT

  public:
    explicit MSLLexer(QObject* parent);

    // Takes the colours for a light or a dark background.
    void setDark(bool isDark);

    const char* language() const override { return "Metal"; }
    const char* lexer() const override { return nullptr; }
    QString description(int style) const override;
    QColor defaultColor(int style) const override;
    QColor defaultPaper(int style) const override;
    QFont defaultFont(int style) const override;
    const char* wordCharacters() const override;
    const char* blockStart(int* style) const override;
    const char* blockEnd(int* style) const override;
    int braceStyle() const override { return 0; }
    void styleText(int start, int end) override;

  private:
    void fold(std::string_view text, const std::vector<char>& styles);

    bool isDark_ = false;
};

} // namespace tarnwick::player
