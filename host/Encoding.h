// A person's texts on their way into a request: the library puts many of them into it as they stand.
#pragma once

#include <string>
#include <string_view>

#include "client/WapiClient.h"

namespace host {

/// Whether the bytes are well-formed UTF-8.
bool isUtf8(std::string_view bytes);

/// Whether a reader of XML 1.0 would take every character of the text.
bool fitsXml(const CStringT& text);

/// Throws LocalProblem unless it would; `what` is what the message calls the text.
void requireXml(const CStringT& text, const std::string& what);

/// The text as the content of an element.
CStringT xmlOf(const CStringT& text);

/// The text as the content of a CDATA section, which is ended and begun again around what would end it.
CStringT cdataOf(const CStringT& text);

/// The text percent-encoded, for the few places of a form or an address that the library fills without encoding.
CStringT percentOf(const CStringT& text);

}  // namespace host
