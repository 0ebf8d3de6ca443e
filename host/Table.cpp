#include "host/Table.h"

#include <algorithm>
#include <numeric>

#include "host/Text.h"

namespace host {

namespace {

constexpr std::size_t kGap = 2;
constexpr std::size_t kLeast = 4;  // three letters and the dots

using Widths = std::vector<std::size_t>;

Widths widths(const std::vector<Row>& rows)
{
    Widths result;
    for (const Row& row : rows) {
        result.resize(std::max(result.size(), row.size()));
        for (std::size_t column = 0; column < row.size(); ++column) {
            result[column] = std::max(result[column], displayWidth(row[column]));
        }
    }
    return result;
}

/// Takes `excess` columns from those from `first` on, always from the widest; returns what none of them could give.
std::size_t narrowed(Widths& width, std::size_t first, std::size_t excess)
{
    for (; excess > 0; --excess) {
        const auto widest = std::max_element(width.begin() + static_cast<std::ptrdiff_t>(first), width.end());
        if (widest == width.end() || *widest <= kLeast) break;
        --*widest;
    }
    return excess;
}

void fit(Widths& width, std::size_t limit)
{
    if (limit == 0 || width.empty()) return;
    for (std::size_t& column : width) column = std::min(column, std::max(limit, kLeast));
    const std::size_t whole = std::accumulate(width.begin(), width.end(), kGap * (width.size() - 1));
    const std::size_t excess = whole - std::min(whole, limit);
    narrowed(width, 0, narrowed(width, 1, excess));
}

std::string alignedRow(const Row& row, const Widths& width)
{
    std::string line;
    std::size_t missing = 0;
    for (std::size_t column = 0; column < row.size(); ++column) {
        const std::string cell = shortened(row[column], width[column]);
        if (!cell.empty()) {
            line.append(missing, ' ').append(cell);
            missing = 0;
        }
        missing += width[column] - displayWidth(cell) + kGap;
    }
    return line;
}

}  // namespace

std::string heading(const std::string& text, const Look& look)
{
    return look.bold ? "\x1b[1m" + text + "\x1b[0m" : text;
}

std::string alignedTable(std::vector<Row> rows, const Look& look)
{
    if (!look.header) rows.erase(rows.begin());
    Widths width = widths(rows);
    fit(width, look.width);
    std::string text;
    for (std::size_t at = 0; at < rows.size(); ++at) {
        const std::string line = alignedRow(rows[at], width);
        text += (at == 0 && look.header ? heading(line, look) : line) + '\n';
    }
    return text;
}

std::string alignedRecord(const std::vector<Row>& rows, const Look& look)
{
    const Widths width = widths(rows);
    std::string text;
    for (const Row& row : rows) {
        const std::string& name = row.front();
        text += heading(name, look);
        if (!row.back().empty()) text.append(width.front() - displayWidth(name) + kGap, ' ').append(row.back());
        text += '\n';
    }
    return text;
}

}  // namespace host
