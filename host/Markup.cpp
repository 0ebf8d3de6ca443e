#include "host/Markup.h"

#include <algorithm>
#include <vector>

namespace host {

namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::size_t kDeepest = 40;  // beyond it the lines move in no further

/// One piece behind the other: a tag, or what stands between two.
class Pieces {
public:
    explicit Pieces(std::string_view xml) : rest_(xml) {}

    /// False at the end, and where a tag has none.
    bool next()
    {
        if (rest_.empty() || !isWhole_) return false;
        const std::size_t length = rest_.front() == '<' ? markupLength() : std::min(rest_.find('<'), rest_.size());
        if (length == std::string_view::npos) return isWhole_ = false;
        piece_ = rest_.substr(0, length);
        rest_.remove_prefix(length);
        return true;
    }

    std::string_view piece() const { return piece_; }
    bool isWhole() const { return isWhole_; }

private:
    std::size_t upTo(std::string_view end) const
    {
        const std::size_t at = rest_.find(end);
        return at == std::string_view::npos ? at : at + end.size();
    }

    std::size_t markupLength() const
    {
        if (rest_.starts_with("<!--")) return upTo("-->");
        if (rest_.starts_with("<![CDATA[")) return upTo("]]>");
        if (rest_.starts_with("<?")) return upTo("?>");
        return tagLength();
    }

    /// An angle bracket between quotes is part of an attribute's value.
    std::size_t tagLength() const
    {
        std::size_t at = 1;
        for (at = rest_.find_first_of("<>\"'", at); at < rest_.size(); at = rest_.find_first_of("<>\"'", at + 1)) {
            if (rest_[at] == '>') return at + 1;
            if (rest_[at] == '<') break;
            at = std::min(rest_.find(rest_[at], at + 1), rest_.size());
        }
        return std::string_view::npos;
    }

    std::string_view rest_;
    std::string_view piece_;
    bool isWhole_ = true;
};

bool isBlank(std::string_view text)
{
    return text.find_first_not_of(kBlanks) == std::string_view::npos;
}

std::string_view nameOf(std::string_view tag)
{
    tag.remove_prefix(tag.starts_with("</") ? 2 : 1);
    return tag.substr(0, tag.find_first_of(" \t\r\n/>"));
}

class Indenter {
public:
    /// False where an end tag has no beginning.
    bool take(std::string_view piece)
    {
        const bool isText = piece.front() != '<' || piece.starts_with("<![CDATA[");
        if (isText) return text(piece);
        if (piece.starts_with("</")) return close(piece);
        line(piece);
        const bool opens = piece[1] != '!' && piece[1] != '?' && !piece.ends_with("/>");
        if (opens) open_.push_back(nameOf(piece));
        hasElements_ |= opens || piece.ends_with("/>");
        isInline_ = opens;
        return true;
    }

    bool isComplete() const { return open_.empty() && hasElements_; }
    std::string result() && { return std::move(result_); }

private:
    void line(std::string_view piece)
    {
        if (!isBlank(inline_)) result_ += inline_;
        inline_.clear();
        if (!result_.empty()) result_ += '\n';
        result_.append(2 * std::min(open_.size(), kDeepest), ' ').append(piece);
    }

    /// Blanks between tags are the writer's own way to move lines in.
    bool text(std::string_view piece)
    {
        if (isInline_) inline_ += piece;
        else if (isBlank(piece)) return true;
        else line(piece);
        return !open_.empty();
    }

    bool close(std::string_view piece)
    {
        if (open_.empty() || open_.back() != nameOf(piece)) return false;
        open_.pop_back();
        if (isInline_) result_.append(inline_).append(piece);
        else line(piece);
        isInline_ = false;
        inline_.clear();
        return true;
    }

    std::string result_;
    std::vector<std::string_view> open_;
    std::string inline_;  // what the innermost element holds, nothing but text so far
    bool isInline_ = false;
    bool hasElements_ = false;
};

}  // namespace

std::optional<std::string> indented(std::string_view xml)
{
    Pieces pieces(xml);
    Indenter indenter;
    while (pieces.next()) {
        if (!indenter.take(pieces.piece())) return std::nullopt;
    }
    if (!pieces.isWhole() || !indenter.isComplete()) return std::nullopt;
    return std::move(indenter).result();
}

}  // namespace host
