#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace service::tape {

// What a piece of a tape's text is: bytes as they stand, or the place of something that is another each time.
enum class Kind {
    literal,
    server,    // scheme, host and port of the service
    cred,      // a credential that a reply gave
    secret,    // a password or a token
    id,        // an identifier that the service made
    time,      // a moment that the service wrote down
    any,       // whatever stands there
    boundary,  // what parts a multipart form
};

struct Piece {
    Kind kind = Kind::literal;
    int number = 0;    // of a credential, a secret or an identifier
    std::string text;  // the bytes; of an identifier and a moment what was recorded

    bool operator==(const Piece&) const = default;
};

using Template = std::vector<Piece>;

// What stands in the braces: "cred 1" for Kind::cred.
std::string nameOf(const Piece& piece);

// The piece behind the one that is a literal at the end already.
void append(Template& text, Piece piece);

// How a value is spelled at a place: as it is, percent-encoded in a form, with its markup escaped in XML.
enum class Place { plain, form, xml };

std::string spelled(std::string_view value, Place place);

// What was spelled so. A text that is not is taken as it stands.
std::string unspelled(std::string_view text, Place place);

// Every way in which a value may stand in a text, the longest first.
std::vector<std::string> spellings(std::string_view value);

// How values are spelled in a body of this content type.
Place placeOf(std::string_view contentType);

bool isMultipart(std::string_view contentType);

}  // namespace service::tape
