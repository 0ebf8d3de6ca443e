// What keeps the program from its work: exit status 2.
#pragma once

#include <stdexcept>

namespace logreader {

class Problem : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace logreader
