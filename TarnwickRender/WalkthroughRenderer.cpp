#include "TarnwickRender/WalkthroughRenderer.h"

#include "TarnwickBase/Precondition.h"
#include "TarnwickPlatform/Pictures/Composing.h"
#include "TarnwickPlatform/Text/Canvas.h"
#include "TarnwickRender/Walkthroughs/WalkthroughCode.h"

#include <algorithm>
#include <cmath>

namespace tarnwick {
namespace {

constexpr Ink accent{1.0, 0.70, 0.37, 1};
constexpr Ink panel{1, 1, 1, 0.035}; // behind the code
constexpr Ink lit = accent.faded(0.08);
constexpr Ink titleInk{0.96, 0.97, 0.99, 1};
constexpr std::size_t mostDots = 12; // more pages are shown as numbers
constexpr int manyLines = 1000;      // more than fit
constexpr double anyWidth = 1e5;     // pixels, wider than any line

TextBlock words(std::string text, double points, double width, int lines) {
    return {.text = std::move(text),
            .points = points,
            .lineHeight = WalkthroughLayout::wordLineHeight,
            .ink = plainInk,
            .width = width,
            .lines = lines};
}

// A block of one line that fits `width`: smaller, at least by the factor `least`, else cut.
TextBlock fitted(TextBlock block, double width, double least) {
    block.width = anyWidth;
    block.points *= std::clamp(width / std::max(1.0, extentOf(block).width), least, 1.0);
    block.width = width;
    return block;
}

double heightOf(const std::vector<TextBlock>& blocks) {
    double height = 0;
    for (const TextBlock& block : blocks)
        height += extentOf(block).height;
    return height;
}

void setSizes(TextBlock& block, const WalkthroughLayout& layout, double points) {
    const std::size_t indent = std::min(block.text.find_first_not_of(' '), std::size_t{24});
    block.points = points;
    block.lineHeight = WalkthroughLayout::codeLineHeight;
    block.width = layout.codeWidth();
    block.hanging = static_cast<double>(indent + 4) * 0.6 * points;
}

// The code of a page. A line that is too long wraps into the free lines below the code, in the
// order of the lines. It is cut if no free line is left.
std::vector<TextBlock> codeOf(const WalkthroughPage& page, const WalkthroughLayout& layout,
                              double points) {
    std::vector<TextBlock> blocks = codeBlocks(page);
    const double room = layout.codeHeight() / (WalkthroughLayout::codeLineHeight * points);
    int left = std::max(0, static_cast<int>(room + 0.01) - static_cast<int>(blocks.size()));
    for (TextBlock& block : blocks) {
        setSizes(block, layout, points);
        block.lines = 1 + left;
        block.lines = extentOf(block).lines;
        left -= block.lines - 1;
    }
    return blocks;
}

// Whether the page has room for every line, wrapped or not.
bool isWhole(const WalkthroughPage& page, const WalkthroughLayout& layout, double points) {
    std::vector<TextBlock> blocks = codeBlocks(page);
    for (TextBlock& block : blocks) {
        setSizes(block, layout, points);
        block.lines = manyLines;
    }
    return heightOf(blocks) <= layout.codeHeight();
}

// The size at which no line of the page is wrapped.
double unwrappedPoints(const WalkthroughPage& page, const WalkthroughLayout& layout) {
    double widest = 1; // pixels at a size of one pixel
    for (TextBlock& block : codeBlocks(page)) {
        block.points = layout.greatestCodePoints();
        block.width = anyWidth;
        widest = std::max(widest, extentOf(block).width / block.points);
    }
    const auto lines = static_cast<double>(page.lines.size());
    return std::min(layout.codeWidth() / widest,
                    layout.codeHeight() / (WalkthroughLayout::codeLineHeight * lines));
}

// One size for all pages of a stage: the largest without a wrapped line, but at least the readable
// size, and smaller only if lines would be cut.
double codePoints(const WalkthroughStage& stage, const WalkthroughLayout& layout) {
    double points = layout.greatestCodePoints();
    for (const WalkthroughPage& page : stage.pages)
        points = std::min(points, unwrappedPoints(page, layout));
    points = std::max(points, layout.readableCodePoints());
    while (points > layout.leastCodePoints() &&
           !std::ranges::all_of(stage.pages, [&](const WalkthroughPage& page) {
               return isWhole(page, layout, points);
           }))
        points = std::max(0.96 * points, layout.leastCodePoints());
    return points;
}

// The laid-out text of one page, from the top: heading, code, caption.
struct PageContent {
    TextBlock label, title;
    std::vector<TextBlock> summary; // one block; none if it is empty
    std::vector<TextBlock> code;
    std::vector<TextBlock> caption;
    double height = 0; // of everything
};

PageContent contentOf(const WalkthroughStage& stage, std::size_t page, std::size_t stageCount,
                      const WalkthroughLayout& layout, double points) {
    const auto width = static_cast<double>(layout.text.width);
    PageContent content{.label = words("STAGE " + std::to_string(stage.number) + " OF " +
                                           std::to_string(stageCount),
                                       layout.labelPoints(), width / 2, 1),
                        .title = words(stage.title, layout.titlePoints(), width, 1),
                        .code = codeOf(stage.pages[page], layout, points)};
    content.label.weight = TextBlock::Weight::bold;
    content.label.spacing = 0.12 * layout.labelPoints();
    content.label.ink = accent;
    content.title.weight = TextBlock::Weight::bold;
    content.title.ink = titleInk;
    content.title = fitted(content.title, width, 0.6);
    if (!stage.summary.empty()) {
        content.summary.push_back(
            words(stage.summary, layout.wordPoints(), width, WalkthroughLayout::summaryLines));
        content.summary[0].ink = plainInk.faded(0.72);
    }
    if (const std::string& text = stage.pages[page].caption; !text.empty()) {
        // A long caption gets smaller before it is cut.
        const double room = layout.captionHeight();
        TextBlock caption = words(text, layout.wordPoints(), width, manyLines);
        caption.points *= extentOf(caption).height > room ? 0.85 : 1;
        caption.lines = static_cast<int>(room / (caption.points * caption.lineHeight));
        content.caption.push_back(std::move(caption));
    }
    content.height = layout.headingHeight() + heightOf(content.summary) + layout.gap() +
                     2 * layout.padding() + heightOf(content.code) +
                     (content.caption.empty() ? 0 : layout.gap() + heightOf(content.caption));
    return content;
}

class PageDrawing {
  public:
    PageDrawing(const WalkthroughLayout& layout, double top)
        : layout_(layout), canvas_(static_cast<std::uint32_t>(layout.width),
                                   static_cast<std::uint32_t>(layout.height)),
          x_(static_cast<double>(layout.text.x)), y_(top),
          width_(static_cast<double>(layout.text.width)) {}

    void drawPlace(std::size_t page, std::size_t count);
    void drawHeading(const PageContent& content);
    void drawCode(const std::vector<TextBlock>& code, const WalkthroughPage& page);
    void drawWords(const std::vector<TextBlock>& blocks);
    Picture picture() const { return canvas_.picture(); }

  private:
    const WalkthroughLayout& layout_;
    Canvas canvas_;
    double x_, y_, width_; // the next block is drawn at (x_, y_)
};

// Draws the page's place in the stage at the right of the first line, as dots or numbers.
void PageDrawing::drawPlace(std::size_t page, std::size_t count) {
    const double points = layout_.labelPoints();
    if (count > mostDots) {
        TextBlock numbers =
            words(std::to_string(page + 1) + " / " + std::to_string(count), points, width_ / 2, 1);
        numbers.ink = plainInk.faded(0.7);
        numbers.width = std::ceil(extentOf(numbers).width);
        canvas_.draw(numbers, x_ + width_ - numbers.width, y_);
        return;
    }
    const double dot = 0.5 * points, step = 1.1 * points;
    for (std::size_t index = 0; count > 1 && index < count; ++index)
        canvas_.fill({.x = x_ + width_ - dot - step * static_cast<double>(count - 1 - index),
                      .y = y_ + 0.45 * points,
                      .width = dot,
                      .height = dot},
                     index == page ? accent : plainInk.faded(0.25), dot);
}

void PageDrawing::drawHeading(const PageContent& content) {
    canvas_.draw(content.label, x_, y_);
    canvas_.draw(content.title, x_, y_ + layout_.labelHeight());
    y_ += layout_.headingHeight();
    drawWords(content.summary);
}

void PageDrawing::drawWords(const std::vector<TextBlock>& blocks) {
    for (const TextBlock& block : blocks) {
        canvas_.draw(block, x_, y_);
        y_ += extentOf(block).height;
    }
}

void PageDrawing::drawCode(const std::vector<TextBlock>& code, const WalkthroughPage& page) {
    y_ += layout_.gap();
    canvas_.fill(
        {.x = x_, .y = y_, .width = width_, .height = heightOf(code) + 2 * layout_.padding()},
        panel, 0.6 * layout_.padding());
    const double bar = std::max(1.0, std::round(0.18 * layout_.padding()));
    y_ += layout_.padding();
    for (std::size_t at = 0; at < code.size(); ++at) {
        // Whole pixels, so that there is no seam between two lines.
        const double end = y_ + extentOf(code[at]).height, top = std::round(y_);
        const TextBand band{.x = x_, .y = top, .width = width_, .height = std::round(end) - top};
        if (page.lines[at].kind == WalkthroughLine::Kind::added) {
            canvas_.fill(band, lit);
            canvas_.fill({.x = x_, .y = band.y, .width = bar, .height = band.height}, accent);
        }
        canvas_.draw(code[at], x_ + layout_.padding(), y_);
        y_ = end;
    }
    y_ += layout_.padding() + layout_.gap();
}

} // namespace

WalkthroughRenderer::WalkthroughRenderer(std::int64_t width, std::int64_t height)
    : layout_(WalkthroughLayout::of(width, height)) {}

WalkthroughRenderer::Pages::Pages(const WalkthroughLayout& layout, const WalkthroughStage& stage,
                                  std::size_t stageCount)
    : layout_(layout), stage_(stage), stageCount_(stageCount), points_(codePoints(stage, layout)) {
    // The tallest page is centred; the other pages have their headings at the same height.
    double tallest = 0;
    for (std::size_t page = 0; page < stage.pages.size(); ++page)
        tallest = std::max(tallest, contentOf(stage, page, stageCount, layout, points_).height);
    const double spare = std::max(0.0, static_cast<double>(layout.text.height) - tallest);
    top_ = std::floor(static_cast<double>(layout.text.y) + spare / 2);
}

Picture WalkthroughRenderer::Pages::overlay(std::size_t page) const {
    precondition(page < stage_.pages.size(), "a page to draw is one of the stage", "page", page,
                 "pages", stage_.pages.size());
    const PageContent content = contentOf(stage_, page, stageCount_, layout_, points_);
    PageDrawing drawing(layout_, top_);
    drawing.drawPlace(page, stage_.pages.size());
    drawing.drawHeading(content);
    drawing.drawCode(content.code, stage_.pages[page]);
    drawing.drawWords(content.caption);
    return drawing.picture();
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
