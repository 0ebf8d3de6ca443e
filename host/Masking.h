// Secrets on their way to a reader: passwords, tokens and credentials are not for the eye.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace host {

class Secrets {
public:
    /// With `shown` nothing is masked.
    explicit Secrets(bool shown) : shown_(shown) {}

    /// A text that is masked wherever it stands, in each of its encodings. Short ones are masked by their names alone:
    /// they would be found in everything.
    void add(const std::string& secret);
    /// A text that is no secret, although a secret's name stands beside it.
    void allow(const std::string& text) { allowed_.push_back(text); }

    /// The text with every value masked that stands as name=value, as "name": "value" or as an element of a secret's
    /// name, XML or not, well-formed or not.
    std::string masked(std::string_view text) const;
    /// The same for a line meant for people, who may speak of a password: only name=value as in an address.
    std::string maskedLine(std::string_view line) const;
    /// A header line.
    std::string maskedHeader(std::string_view line) const;
    /// A form or a query, percent-encoded as it is.
    std::string maskedForm(std::string_view encoded) const;
    /// The value of a form's field, decoded.
    std::string maskedField(std::string_view name, std::string_view value) const;
    /// The text of a multipart form.
    std::string maskedParts(std::string_view parts) const;

private:
    template <typename Find>
    std::string maskedBy(std::string_view text, Find&& valueAt) const;
    std::string cover(std::string_view value) const;
    /// A tag with the values of its attributes masked.
    std::string withoutQuoted(std::string_view tag) const;
    std::string withoutValues(std::string text) const;

    bool shown_;
    std::vector<std::string> secrets_;
    std::vector<std::string> allowed_;
};

/// Whether what goes by this name is a secret.
bool isSecretName(std::string_view name);

/// The text with its percent escapes decoded; what is no escape stays.
std::string percentDecoded(std::string_view text);

}  // namespace host
