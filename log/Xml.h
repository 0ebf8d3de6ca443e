// Just enough of XML to show a reply and to see what it says. It reads what a hostile service sends, in linear time.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace logreader {

enum class XmlKind { open, close, empty, text, cdata, other, broken, end };

struct XmlToken {
    XmlKind kind = XmlKind::end;
    std::string_view name;  ///< of an element
    std::string_view raw;   ///< all of it; of what is broken, the rest of the document
};

/// One markup or text after the other. A document type declaration counts as broken: the library stops there too.
class XmlScanner {
public:
    explicit XmlScanner(std::string_view text) : rest_(text) {}

    XmlToken next();

private:
    XmlToken cut(XmlKind kind, std::size_t length, std::string_view name = {});
    XmlToken upTo(XmlKind kind, std::string_view closing);
    XmlToken tag();

    std::string_view rest_;
};

/// Follows tokens through the tree of elements.
class XmlTree {
public:
    /// False where the document cannot go on like this: an end without its begin, a second root, text outside the root,
    /// elements nested deeper than anybody means.
    bool step(const XmlToken& token);

    bool isComplete() const { return hasRoot_ && open_.empty(); }
    bool hasRoot() const { return hasRoot_; }
    const std::vector<std::string_view>& open() const { return open_; }

private:
    bool enter(const XmlToken& token);

    std::vector<std::string_view> open_;
    bool hasRoot_ = false;
};

/// Where the tag that begins the text ends, npos where it does not.
std::size_t tagEnd(std::string_view text);

/// A text with its references resolved; those that mean nothing stay as they are.
std::string withoutReferences(std::string_view text);

bool isWellFormed(std::string_view xml);

/// Writes XML with a line an element, piece by piece; what is not well-formed is written as it is.
void writeIndented(std::string_view xml, const std::function<void(std::string_view)>& write);

}  // namespace logreader
