// The form text of a request: name=value pairs.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace logreader {

struct Field {
    std::string name;
    std::string value;
};

using Fields = std::vector<Field>;

/// %XX and + as a form has them; what is no code stays as it is.
std::string percentDecoded(std::string_view text);

/// Whether a name is that of a password, a token or a credential, alone or at its end: "newCred" is one.
bool isSecretName(std::string_view name);

/// The pairs in their order, decoded. Some requests carry a credential as it stands, in which a "&" parts nothing: so
/// behind a secret's name everything up to the next name that the service's commands have is its value.
Fields fieldsOf(std::string_view form);

/// The value of the first field of this name, empty where there is none.
std::string_view valueOf(const Fields& fields, std::string_view name);

/// Whether a text of the log is a request: pairs, of which one is a command or a credential.
bool looksLikeForm(std::string_view text);

}  // namespace logreader
