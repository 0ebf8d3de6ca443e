// The selectors of a handler, compiled into a tree of element names.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "pvutil/StringEx.h"

namespace EXPAT_EX {

/// One element name below its parent's. An element is open at most once on a path, so its text collects right here.
class XmlPathNode {
public:
    explicit XmlPathNode(CStringT name, XmlPathNode* parent) : name_(std::move(name)), parent_(parent) {}

    /// The node at the end of `path`, made with all that lead there where they are missing.
    XmlPathNode& at(kzn::pvutil::stringex::CStringView path);

    /// The child of that name, or null. Replies keep an order, so the search starts behind the last match.
    XmlPathNode* find(const kzn::pvutil::stringex::CharT* name) noexcept;

    XmlPathNode* parent() const noexcept { return parent_; }

    /// A text begins that this and all below it have seen nothing of.
    void restart() noexcept;

    /// Hands the collected text to every target.
    void deliver();

    std::vector<CStringT*> targets;
    std::vector<unsigned> listeners;
    CStringT text;
    std::size_t items = 0;  // elements that listeners were told of

private:
    XmlPathNode& child(kzn::pvutil::stringex::CStringView name);

    CStringT name_;
    XmlPathNode* parent_;
    std::vector<std::unique_ptr<XmlPathNode>> children_;
    std::size_t next_ = 0;
};

}  // namespace EXPAT_EX
