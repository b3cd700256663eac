#include "TarnwickRender/WalkthroughRenderer.h"

#include "TarnwickBase/Precondition.h"
#include "TarnwickPlatform/Pictures/Composing.h"
#include "TarnwickPlatform/Text/Canvas.h"
#include "TarnwickRender/WalkthroughCode.h"

#include <algorithm>
#include <cmath>

namespace tarnwick {
namespace {

using Kind = WalkthroughLine::Kind;

constexpr Ink accent{1.0, 0.70, 0.37, 1};
constexpr Ink panel{1, 1, 1, 0.035}; // behind the code
constexpr Ink lit = accent.faded(0.10);
constexpr Ink titleInk{0.96, 0.97, 0.99, 1};
constexpr std::size_t mostDots = 12; // of a stage's pages; more are written as numbers
constexpr double anyWidth = 1e5;     // pixels, beyond any line that is shown whole

// The code of one page, ready to be drawn.
struct CodeLine {
    TextBlock block;
    Kind kind;
};

std::vector<CodeLine> codeOf(const WalkthroughPage& page, double points) {
    std::vector<CodeLine> lines;
    for (const WalkthroughLine& line : page.lines) {
        lines.push_back({codeBlock(line), line.kind});
        TextBlock& block = lines.back().block;
        block.points = points;
        block.lineHeight = WalkthroughLayout::codeLineHeight;
        block.width = anyWidth;
    }
    return lines;
}

// The size at which all of a stage's pages fit, as far as it is readable.
double codePoints(const WalkthroughStage& stage, const WalkthroughLayout& layout) {
    double points = layout.greatestCodePoints();
    for (const WalkthroughPage& page : stage.pages) {
        const auto lines = static_cast<double>(std::max<std::size_t>(1, page.lines.size()));
        points =
            std::min(points, layout.codeHeight() / (WalkthroughLayout::codeLineHeight * lines));
        for (const CodeLine& line : codeOf(page, layout.greatestCodePoints()))
            points = std::min(points, layout.greatestCodePoints() * layout.codeWidth() /
                                          std::max(1.0, extentOf(line.block).width));
    }
    return std::max(points, layout.leastCodePoints());
}

// Gives lines that are too long the room of further ones, first come first served.
void wrap(std::vector<CodeLine>& lines, const WalkthroughLayout& layout, double points) {
    const double room = layout.codeHeight() / (WalkthroughLayout::codeLineHeight * points);
    int left = std::max(0, static_cast<int>(room + 0.01) - static_cast<int>(lines.size()));
    for (CodeLine& line : lines) {
        const std::size_t indent = std::min(line.block.text.find_first_not_of(' '),
                                            std::size_t{24}); // of a line of blanks, there is none
        line.block.width = layout.codeWidth();
        line.block.hanging = static_cast<double>(indent + 4) * 0.6 * points;
        line.block.lines = 1 + left;
        line.block.lines = std::max(1, extentOf(line.block).lines);
        left -= line.block.lines - 1;
    }
}

TextBlock words(std::string text, double points, double width, int lines) {
    return {.text = std::move(text),
            .points = points,
            .lineHeight = WalkthroughLayout::wordLineHeight,
            .ink = plainInk,
            .width = width,
            .lines = lines};
}

class Page {
  public:
    Page(const WalkthroughLayout& layout, const WalkthroughStage& stage, std::size_t page)
        : layout_(layout), stage_(stage), page_(page),
          canvas_(static_cast<std::uint32_t>(layout.width),
                  static_cast<std::uint32_t>(layout.height)),
          x_(static_cast<double>(layout.text.x)), y_(static_cast<double>(layout.text.y)),
          width_(static_cast<double>(layout.text.width)) {}

    Picture drawn(std::size_t stageCount) {
        drawPlace();
        drawHeading(stageCount);
        drawCode();
        drawCaption();
        return canvas_.picture();
    }

  private:
    void drawPlace();
    void drawHeading(std::size_t stageCount);
    void drawCode();
    void drawLine(const CodeLine& line);
    void drawCaption();

    const WalkthroughLayout& layout_;
    const WalkthroughStage& stage_;
    std::size_t page_;
    Canvas canvas_;
    double x_, y_, width_; // what comes next is drawn at (x_, y_)
};

// Which of the stage's pages this is, at the right of the first line: dots, or numbers.
void Page::drawPlace() {
    const std::size_t count = stage_.pages.size();
    const double points = layout_.labelPoints();
    if (count > mostDots) {
        TextBlock numbers =
            words(std::to_string(page_ + 1) + " / " + std::to_string(count), points, width_ / 2, 1);
        numbers.ink = plainInk.faded(0.7);
        canvas_.draw(numbers, x_ + width_ - extentOf(numbers).width, y_);
        return;
    }
    const double dot = 0.5 * points, step = 1.1 * points;
    for (std::size_t index = 0; count > 1 && index < count; ++index)
        canvas_.fill({.x = x_ + width_ - dot - step * static_cast<double>(count - 1 - index),
                      .y = y_ + 0.45 * points,
                      .width = dot,
                      .height = dot},
                     index == page_ ? accent : plainInk.faded(0.25), dot);
}

void Page::drawHeading(std::size_t stageCount) {
    TextBlock label =
        words("STAGE " + std::to_string(stage_.number) + " OF " + std::to_string(stageCount),
              layout_.labelPoints(), width_ / 2, 1);
    label.weight = TextBlock::Weight::bold;
    label.spacing = 0.12 * label.points;
    label.ink = accent;
    canvas_.draw(label, x_, y_);

    TextBlock title = words(stage_.title, layout_.titlePoints(), anyWidth, 1);
    title.weight = TextBlock::Weight::bold;
    title.lineHeight = 1.3;
    title.ink = titleInk;
    // A long title is set smaller before it is cut.
    title.points *= std::clamp(width_ / std::max(1.0, extentOf(title).width), 0.6, 1.0);
    title.width = width_;
    canvas_.draw(title, x_, y_ + 1.6 * layout_.labelPoints());

    int lines = 0;
    if (!stage_.summary.empty()) {
        TextBlock summary =
            words(stage_.summary, layout_.wordPoints(), width_, WalkthroughLayout::summaryLines);
        summary.ink = plainInk.faded(0.72);
        canvas_.draw(summary, x_, y_ + layout_.headingHeight(0));
        lines = extentOf(summary).lines;
    }
    y_ += layout_.headingHeight(lines) + layout_.gap();
}

void Page::drawCode() {
    const double points = codePoints(stage_, layout_);
    std::vector<CodeLine> lines = codeOf(stage_.pages[page_], points);
    wrap(lines, layout_, points);
    double height = 2 * layout_.padding();
    for (const CodeLine& line : lines)
        height += extentOf(line.block).height;
    canvas_.fill({.x = x_, .y = y_, .width = width_, .height = height}, panel,
                 0.6 * layout_.padding());
    y_ += layout_.padding();
    for (const CodeLine& line : lines)
        drawLine(line);
    y_ += layout_.padding() + layout_.gap();
}

void Page::drawLine(const CodeLine& line) {
    const double height = extentOf(line.block).height;
    if (line.kind == Kind::added) {
        const double bar = std::max(1.0, 0.18 * layout_.padding());
        canvas_.fill({.x = x_, .y = y_, .width = width_, .height = height}, lit);
        canvas_.fill({.x = x_, .y = y_, .width = bar, .height = height}, accent);
    }
    canvas_.draw(line.block, x_ + layout_.padding(), y_);
    y_ += height;
}

void Page::drawCaption() {
    const std::string& caption = stage_.pages[page_].caption;
    if (caption.empty())
        return;
    // A long caption is set smaller before it is cut.
    const double room =
        WalkthroughLayout::captionLines * WalkthroughLayout::wordLineHeight * layout_.wordPoints();
    TextBlock block = words(caption, layout_.wordPoints(), width_, 1000);
    if (extentOf(block).height > room)
        block.points *= 0.85;
    block.lines = std::max(1, static_cast<int>(room / (block.points * block.lineHeight)));
    canvas_.draw(block, x_, y_);
}

} // namespace

WalkthroughRenderer::WalkthroughRenderer(std::int64_t width, std::int64_t height)
    : layout_(WalkthroughLayout::of(width, height)) {}

Picture WalkthroughRenderer::overlay(const WalkthroughStage& stage, std::size_t page,
                                     std::size_t stageCount) const {
    precondition(page < stage.pages.size(), "Only pages that a stage has are drawn.");
    return Page(layout_, stage, page).drawn(stageCount);
}

Picture WalkthroughRenderer::frame(const Picture& picture, const Picture& overlay) const {
    const auto channel = [](double value) {
        return static_cast<std::uint8_t>(std::lround(255 * value));
    };
    Picture frame = filledPicture(
        static_cast<std::uint32_t>(layout_.width), static_cast<std::uint32_t>(layout_.height),
        {channel(background.blue), channel(background.green), channel(background.red)});
    paste(frame, picture, static_cast<std::size_t>(layout_.picture.x),
          static_cast<std::size_t>(layout_.picture.y));
    layOver(frame, overlay);
    return frame;
}

} // namespace tarnwick
