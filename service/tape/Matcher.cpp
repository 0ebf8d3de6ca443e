#include "service/tape/Matcher.h"

#include <algorithm>
#include <cctype>
#include <optional>
#include <stdexcept>
#include <vector>

#include "service/base/Text.h"
#include "service/tape/Difference.h"
#include "service/tape/Escapes.h"

namespace service::tape {

namespace {

constexpr std::size_t kMostRetries = 10'000;
constexpr std::size_t kFollowing = 8;  // enough to know where a value ends

bool mayStandIn(Kind kind, Place place, char c)
{
    const auto byte = static_cast<unsigned char>(c);
    switch (kind) {
    case Kind::id: return std::isalnum(byte) != 0 || std::string_view("-_.:").find(c) != std::string_view::npos;
    case Kind::time: return std::isdigit(byte) != 0 || std::string_view("-TZ:.+").find(c) != std::string_view::npos;
    default: break;
    }
    if (place == Place::form) return c != '&' && c != '<';
    return place == Place::xml ? c != '<' && c != '>' : byte >= ' ' && c != '"' && c != ';';
}

class Fitter {
public:
    Fitter(const Template& wanted, std::string_view text, Place place, Bindings& bindings)
        : wanted_(wanted), text_(text), place_(place), bindings_(bindings)
    {
    }

    Fit run()
    {
        while (true) {
            if (piece_ == wanted_.size() && at_ == text_.size()) return {true, at_, {}};
            if (piece_ == wanted_.size() || !step()) {
                noteDifference();
                if (!retry()) return {false, furthest_, wantedThere_};
            }
        }
    }

private:
    // Goes over the next piece; false where the text is another.
    bool step()
    {
        const Piece& piece = wanted_[piece_];
        if (piece.kind == Kind::literal) return stepOver(piece.text);
        if (piece.kind == Kind::any) {
            anyPiece_ = ++piece_;
            anyAt_ = at_;
            if (piece_ == wanted_.size()) at_ = text_.size();
            return true;
        }
        const std::string* value = piece.kind == Kind::time ? nullptr : bindings_.find(piece);
        return value != nullptr ? stepOverSpelled(*value) : capture(piece);
    }

    bool stepOver(std::string_view literal)
    {
        if (!text_.substr(at_).starts_with(literal)) return false;
        at_ += literal.size();
        ++piece_;
        return true;
    }

    bool stepOverSpelled(const std::string& value)
    {
        return std::ranges::any_of(spellings(value), [this](const std::string& text) { return stepOver(text); });
    }

    bool capture(const Piece& piece)
    {
        std::size_t end = at_;
        while (end < text_.size() && mayStandIn(piece.kind, place_, text_[end])) ++end;
        const bool literalFollows = piece_ + 1 < wanted_.size() && wanted_[piece_ + 1].kind == Kind::literal;
        if (literalFollows) end = std::min(end, text_.find(wanted_[piece_ + 1].text.substr(0, kFollowing), at_));
        if (end == at_) return false;
        if (piece.kind != Kind::time) bindings_.bind(piece, unspelled(text_.substr(at_, end - at_), place_));
        at_ = end;
        ++piece_;
        return true;
    }

    // Lets the last {any} take more.
    bool retry()
    {
        if (!anyPiece_ || ++retries_ > kMostRetries || anyAt_ >= text_.size()) return false;
        piece_ = *anyPiece_;
        ++anyAt_;
        if (wanted_[piece_].kind == Kind::literal) anyAt_ = text_.find(wanted_[piece_].text, anyAt_);
        at_ = anyAt_ = std::min(anyAt_, text_.size());
        return true;
    }

    void noteDifference()
    {
        std::size_t at = at_;
        std::string wanted = "nothing more";
        if (piece_ < wanted_.size()) {
            const Piece& piece = wanted_[piece_];
            wanted = placeholderText(piece);
            if (piece.kind == Kind::literal) {
                const auto pair = std::ranges::mismatch(piece.text, text_.substr(at));
                const auto same = static_cast<std::size_t>(pair.in1 - piece.text.begin());
                at += same;
                wanted = excerptOf(std::string_view(piece.text).substr(same));
            }
        }
        if (!wantedThere_.empty() && at <= furthest_) return;
        furthest_ = at;
        wantedThere_ = std::move(wanted);
    }

    const Template& wanted_;
    std::string_view text_;
    Place place_;
    Bindings& bindings_;
    std::size_t piece_ = 0;
    std::size_t at_ = 0;
    std::optional<std::size_t> anyPiece_;  // the piece behind the last {any}
    std::size_t anyAt_ = 0;
    std::size_t retries_ = 0;
    std::size_t furthest_ = 0;
    std::string wantedThere_;
};

}  // namespace

const std::string* Bindings::find(const Piece& piece) const
{
    const auto found = values_.find({piece.kind, piece.number});
    if (found != values_.end()) return &found->second;
    return base_ != nullptr ? base_->find(piece) : nullptr;
}

void Bindings::bind(const Piece& piece, std::string value)
{
    values_.insert_or_assign({piece.kind, piece.number}, std::move(value));
}

void Bindings::forget(const Piece& piece)
{
    values_.erase({piece.kind, piece.number});
}

std::vector<std::string> Bindings::secrets() const
{
    std::vector<std::string> all = base_ != nullptr ? base_->secrets() : std::vector<std::string>();
    for (const auto& [name, value] : values_) {
        if (name.first == Kind::cred || name.first == Kind::secret) all.push_back(value);
    }
    return all;
}

Bindings Bindings::trial() const
{
    Bindings trial;
    trial.base_ = this;
    return trial;
}

void Bindings::adopt(Bindings trial)
{
    for (auto& [name, value] : trial.values_) values_.insert_or_assign(name, std::move(value));
}

Fit fit(const Template& wanted, std::string_view text, Place place, Bindings& bindings)
{
    return Fitter(wanted, text, place, bindings).run();
}

std::string rendered(const Template& text, Place place, const Bindings& bindings)
{
    std::string out;
    for (const Piece& piece : text) {
        // A moment is the recorded one, where there is one.
        const bool asItStands = piece.kind == Kind::literal || (piece.kind == Kind::time && !piece.text.empty());
        const std::string* value = asItStands ? nullptr : bindings.find(piece);
        if (asItStands) out += piece.text;
        else if (value != nullptr) out += spelled(*value, place);
        else if (piece.kind != Kind::any) throw std::out_of_range(nameOf(piece));
    }
    return out;
}

}  // namespace service::tape
