// L[i][j] is the length of the longest common subsequence of the previous lines from i and the
// current lines from j. Neighbours in a row of that table differ by 0 or 1, so a row is stored as
// one bit per column. A row follows from the row below it with one addition for 64 columns (Hyyrö,
// "Bit-Parallel LCS-length Computation Revisited", 2004). Both texts are processed from their ends:
// bit k is about the last k + 1 current lines, and clear if L grows there.
//
// Only every stride-th row is kept. The walk goes the other way and recomputes the rows between.
#include "TarnwickCore/Walkthroughs/AddedLines.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <unordered_map>

namespace tarnwick {
namespace {

using Word = std::uint64_t;
using Row = std::vector<Word>;
using Places = std::vector<std::size_t>;

constexpr std::size_t wordBits = 64;

class CommonLengths {
  public:
    CommonLengths(std::span<const std::string_view> previous,
                  std::span<const std::string_view> current);

    // Whether L[i + 1][j] < L[i][j + 1], for i and j below the numbers of lines.
    bool isLongerWithoutCurrent(std::size_t i, std::size_t j) {
        if (i / stride_ != block_)
            enter(i / stride_);
        const std::size_t row = i % stride_;
        return length(rows_[row + 1], j) < length(rows_[row], j + 1);
    }

  private:
    std::size_t length(const Row& row, std::size_t j) const;
    void makeRow(std::size_t i, const Row& below, Row& row);
    void enter(std::size_t block);

    std::size_t columns_;
    std::vector<const Places*> equals_; // of each previous line: the bits of the equal current ones
    std::unordered_map<std::string_view, Places> places_;
    std::size_t stride_;
    std::vector<Row> kept_; // rows 0, stride, 2 * stride, ..., and the empty one below the last
    std::vector<Row> rows_; // those of `block_`, and the one below them
    std::size_t block_;
    Row matches_; // all bits clear between two rows
};

CommonLengths::CommonLengths(std::span<const std::string_view> previous,
                             std::span<const std::string_view> current)
    : columns_(current.size()) {
    static const Places none;
    for (std::size_t j = 0; j < columns_; ++j)
        places_[current[j]].push_back(columns_ - 1 - j);
    for (const std::string_view line : previous) {
        const auto found = places_.find(line);
        equals_.push_back(found == places_.end() ? &none : &found->second);
    }
    const std::size_t lines = previous.size();
    stride_ = static_cast<std::size_t>(std::sqrt(static_cast<double>(lines))) + 1;
    block_ = lines / stride_ + 1; // past the last
    kept_.resize(block_ + 1);
    matches_.resize((columns_ + wordBits - 1) / wordBits);
    Row below(matches_.size(), ~Word{0}), row(below);
    kept_.back() = below;
    for (std::size_t i = lines; i-- > 0;) {
        makeRow(i, below, row);
        if (i % stride_ == 0)
            kept_[i / stride_] = row;
        std::swap(below, row);
    }
}

std::size_t CommonLengths::length(const Row& row, std::size_t j) const {
    const std::size_t bits = columns_ - j;
    std::size_t clear = bits;
    for (std::size_t word = 0; word < bits / wordBits; ++word)
        clear -= static_cast<std::size_t>(std::popcount(row[word]));
    if (const std::size_t rest = bits % wordBits; rest > 0)
        clear -=
            static_cast<std::size_t>(std::popcount(row[bits / wordBits] & ((Word{1} << rest) - 1)));
    return clear;
}

void CommonLengths::makeRow(std::size_t i, const Row& below, Row& row) {
    for (const std::size_t bit : *equals_[i])
        matches_[bit / wordBits] |= Word{1} << bit % wordBits;
    Word carry = 0;
    for (std::size_t word = 0; word < below.size(); ++word) {
        const Word equal = below[word] & matches_[word];
        const Word sum = below[word] + equal;
        row[word] = (sum + carry) | (below[word] & ~equal);
        carry = static_cast<Word>(sum < equal || sum + carry < sum);
    }
    for (const std::size_t bit : *equals_[i])
        matches_[bit / wordBits] = 0;
}

void CommonLengths::enter(std::size_t block) {
    block_ = block;
    const std::size_t first = block * stride_, end = std::min(first + stride_, equals_.size());
    rows_.assign(end - first + 1, Row(matches_.size()));
    rows_.back() = end == equals_.size() ? kept_.back() : kept_[block + 1];
    for (std::size_t i = end; i-- > first;)
        makeRow(i, rows_[i - first + 1], rows_[i - first]);
}

} // namespace

std::vector<bool> addedLines(std::span<const std::string_view> previous,
                             std::span<const std::string_view> current) {
    std::vector<bool> added(current.size(), false);
    // The walk passes equal beginnings without reading the table. Equal endings need it: they
    // decide which of several equal lines is new.
    const auto first =
        static_cast<std::size_t>(std::ranges::mismatch(previous, current).in1 - previous.begin());
    previous = previous.subspan(first);
    CommonLengths lengths(previous, current.subspan(first));
    for (std::size_t i = 0, j = 0; first + j < current.size();) {
        if (i < previous.size() && previous[i] == current[first + j]) {
            ++i;
            ++j;
        } else if (i == previous.size() || lengths.isLongerWithoutCurrent(i, j)) {
            added[first + j++] = true;
        } else {
            ++i;
        }
    }
    return added;
}

} // namespace tarnwick
