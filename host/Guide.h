// What is to be known beside the commands, topic by topic: for `pvwapi help TOPIC` and the man page.
#pragma once

#include <string>
#include <vector>

#include "host/Page.h"

namespace host {

struct Guide {
    std::string name;
    std::string summary;
    std::vector<Entry> entries;
};

std::vector<Guide> guides();

}  // namespace host
