// A handler that writes down what it is told.
#pragma once

#include <algorithm>
#include <deque>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

#include "pvutil/XmlHandler.h"
#include "tests/support/Text.h"

/// Keeps one text per selector, "?" until it is filled, and a line of events: "(7 x|?" where list 7 starts and "7) x|y"
/// where it ends, each with the texts as they stood then.
class XmlRecorder : public EXPAT_EX::CXMLHandler {
public:
    using List = std::pair<unsigned, const char*>;

    explicit XmlRecorder(std::initializer_list<const char*> selectors, std::initializer_list<List> lists = {})
    {
        for (const char* path : selectors) AddTextSelecter(wide(path), &texts_.emplace_back(wide("?")));
        for (const auto& [id, path] : lists) AddNodeListEventListener(id, wide(path));
    }

    void OnStartNodeListEvent(unsigned id) override { note("(" + std::to_string(id)); }
    void OnEndNodeListEvent(unsigned id) override { note(std::to_string(id) + ")"); }
    void OnStartNodeEvent(unsigned) override { note("node"); }
    void OnEndNodeEvent(unsigned) override { note("node"); }
    void OnStartAttributeEvent(unsigned) override { note("attribute"); }
    void OnEndAttributeEvent(unsigned) override { note("attribute"); }

    /// The texts, a bar between them.
    std::string texts() const
    {
        std::string all;
        for (const CStringT& text : texts_) all.append(&text == &texts_.front() ? "" : "|").append(narrow(text));
        return all;
    }

    const CStringT& text(std::size_t index) const { return texts_[index]; }
    const std::string& events() const { return events_; }

    int parse(std::string_view utf8) { return ParseUtf8(utf8); }

    /// The same text in pieces of so many bytes. 1 if each of them was well.
    int parseInPieces(std::string_view utf8, std::size_t size)
    {
        std::size_t at = 0;
        int well = 1;
        do {
            const auto piece = utf8.substr(at, size);
            at += piece.size();
            well &= ParsePiece(piece, at == utf8.size());
        } while (at != utf8.size());
        return well;
    }

private:
    void note(const std::string& event) { events_ += event + (texts_.empty() ? "" : " ") + texts() + "; "; }

    std::deque<CStringT> texts_;  // their addresses are the handler's targets
    std::string events_;
};
