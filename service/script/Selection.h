#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "service/xml/Node.h"

namespace service::script {

// The part of an object that a request asks for: colon-separated field paths, or "*", or the object's own name, for
// the whole of it.
class Selection {
public:
    Selection(std::string_view text, std::string_view objectName);

    static Selection whole();

    // True where something at or below this path, or the element that holds it, is asked for.
    bool touches(std::string_view path) const;

    // Takes out what was not asked for.
    void prune(xml::Node& object) const;

    void add(std::string_view path);

private:
    Selection() = default;

    // An element that is asked for as a whole, or for what stands in it.
    struct Branch {
        const Branch* child(std::string_view childName) const;
        Branch& childFor(std::string_view childName);
        void prune(xml::Node& node) const;

        std::string name;
        bool whole = false;
        std::vector<Branch> children;
    };

    std::size_t paths_ = 0;
    Branch root_;
};

}  // namespace service::script
