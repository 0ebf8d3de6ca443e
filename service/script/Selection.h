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

    void add(std::string path);

private:
    Selection() = default;

    std::vector<std::string> paths_;
    bool whole_ = false;
};

}  // namespace service::script
