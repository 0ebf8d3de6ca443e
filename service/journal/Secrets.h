#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "log/Form.h"

namespace service::journal {

// Never in the middle of a character: what is kept is text where it was text.
std::string_view cutTo(std::string_view text, std::size_t length);

// Whether nothing but the name of a field can be meant. What is no name can hold anything, a secret too.
bool isPlainName(std::string_view name);

// What a request has of secrets, and what may be kept of the texts around it.
class Secrets {
public:
    explicit Secrets(const logreader::Fields& fields);

    // The text masked, as far as it is kept. Nothing where it hides a secret that only its decoding shows, or where
    // looking for the secrets would take long: each of them is looked for alone.
    std::optional<std::string> shown(std::string_view text);

    // The same of what is a word or a few; the mask in the place of nothing.
    std::string word(std::string_view text);

private:
    bool isLeft(std::string_view text);

    std::vector<std::string> secrets_;
    std::size_t longest_ = 0;
    std::size_t searched_ = 0;  // bytes
};

}  // namespace service::journal
