// The selectors of a handler, compiled into a tree of element names.
#pragma once

#include <cstddef>
#include <cstdint>
#include <forward_list>
#include <string>
#include <string_view>
#include <vector>

#include "pvutil/StringEx.h"

namespace EXPAT_EX {

/// Element names below one another, each with what is selected there. Its parts stand in a few vectors, so that a
/// handler of many selectors is made with few allocations.
class XmlPathTree {
public:
    using Place = std::uint32_t;
    static constexpr Place kRoot = 0;
    static constexpr Place kNowhere = ~Place{0};

    XmlPathTree();

    /// The place at the end of `path` below `from`, made with all that lead there where they are missing. Whoever calls
    /// keeps the path.
    Place at(Place from, std::string_view path);
    /// The same of a path that the tree keeps.
    Place keptAt(Place from, std::string path) { return at(from, paths_.emplace_front(std::move(path))); }

    void addTarget(Place place, CStringT* target);
    void addListener(Place place, unsigned id);

    /// The child of that name, or nowhere. Replies keep an order, so the search starts behind the last match.
    Place find(Place parent, std::string_view name) noexcept;

    Place parent(Place place) const noexcept { return nodes_[place].parent; }

    /// A text begins of which nothing has been seen.
    void restart() noexcept;

    /// An element is open at most once on a path, so what is known of it stands right here.
    struct Element {
        std::size_t items = 0;    // that listeners were told of, of one text
        std::size_t begin = 0;    // where its own text begins among what is collected
        std::size_t counted = 0;  // how far the units of that text are counted
        std::size_t units = 0;    // how many these are
    };
    Element& element(Place place) noexcept { return nodes_[place].element; }

    bool hasTargets(Place place) const noexcept { return nodes_[place].targets.first != kNowhere; }
    bool hasListeners(Place place) const noexcept { return nodes_[place].listeners.first != kNowhere; }

    /// Hands a text to every target of a place, in the order of their registration.
    void deliver(Place place, std::string_view utf8) const;

    template <typename Told>
    void tellListeners(Place place, Told&& told) const
    {
        for (Place at = nodes_[place].listeners.first; at != kNowhere; at = links_[at].next) told(links_[at].listener);
    }

private:
    /// Entries of a vector that are linked by their numbers.
    struct Chain {
        Place first = kNowhere;
        Place last = kNowhere;
    };

    /// Either of the two.
    struct Link {
        CStringT* target = nullptr;
        unsigned listener = 0;
        Place next = kNowhere;
    };

    struct Node {
        std::string_view name;
        Place parent = kNowhere;
        Place sibling = kNowhere;
        Place next = kNowhere;  // the child to be tried first
        Chain children;
        Chain targets;
        Chain listeners;
        Element element;
    };

    Place child(Place parent, std::string_view name);

    void append(Chain Node::*which, Place place, Link link);

    std::vector<Node> nodes_;
    std::vector<Link> links_;
    std::forward_list<std::string> paths_;
};

}  // namespace EXPAT_EX
