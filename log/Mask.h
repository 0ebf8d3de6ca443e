// Keeps passwords, tokens and credentials out of what is shown.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "log/Form.h"

namespace logreader {

/// Stands in the place of a secret.
constexpr std::string_view kMask = "***";

/// The secret values of a request, in each form in which a reply could repeat them: the first 64 values, so that no
/// request makes its reply slow to show.
std::vector<std::string> secretsOf(const Fields& fields);

/// A text in which the content of every element, the value of every attribute, form field and JSON member with a
/// secret's name is masked, and so are the password in an address and every occurrence of what `secrets` holds. Where
/// such an element or a quoted value has no end, the rest of the text is masked.
std::string masked(std::string_view text, const std::vector<std::string>& secrets = {});

/// The same for the values of a request.
Fields masked(Fields fields);

/// Whether a text in which nothing is left to mask holds a secret all the same, percent-encoded once or twice.
bool hidesSecret(std::string_view text, const std::vector<std::string>& secrets = {});

}  // namespace logreader
