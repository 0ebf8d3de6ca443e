// Reads an XML text by paths: text selectors and node lists.
#pragma once

#include <exception>
#include <initializer_list>
#include <memory>
#include <string_view>

#include "pvutil/StringEx.h"

namespace EXPAT_EX {

/// A text went beyond one of pvutil/Limits.h. What was read of it must not pass for the whole.
class XmlLimitPassed final : public std::exception {
public:
    explicit XmlLimitPassed(const char* what) noexcept : what_(what) {}
    const char* what() const noexcept override { return what_; }

private:
    const char* what_;  // a literal
};

/// Names of a path, as a literal: whoever keeps it copies nothing.
class PathPiece {
public:
    consteval PathPiece(const char* names) noexcept : names_(names) {}
    constexpr operator std::string_view() const noexcept { return names_; }

private:
    std::string_view names_;
};

/// A path runs from the root element down and ends in "/", such as "/kznapi/response/result/". Several selectors and
/// listeners may stand on one path; they are served in the order of their registration.
///
/// The text of an element is its own character data in one piece, CDATA sections included, without that of its
/// children. A document type declaration ends the parse where it stands: nothing is ever declared by a reply.
class CXMLHandler {
public:
    CXMLHandler();
    CXMLHandler(const CXMLHandler&) = delete;
    CXMLHandler& operator=(const CXMLHandler&) = delete;

    // The order of the virtual operations is part of the handler's interface.
    virtual ~CXMLHandler();

    /// An element on a listener's path starts.
    virtual void OnStartNodeListEvent(unsigned id);
    /// It ends; the text selectors on it and inside it are filled by then.
    virtual void OnEndNodeListEvent(unsigned id);
    /// Kept for handlers that listen to single nodes and to attributes; node lists raise none of these.
    virtual void OnStartNodeEvent(unsigned id);
    virtual void OnEndNodeEvent(unsigned id);
    virtual void OnStartAttributeEvent(unsigned id);
    virtual void OnEndAttributeEvent(unsigned id);

    /// Each time an element on `path` ends, its text replaces what `*target` holds.
    void AddTextSelecter(const CStringT& path, CStringT* target);

    /// Raises the node-list events with `id` for each element on `path`.
    void AddNodeListEventListener(unsigned id, const CStringT& path);

    /// The same with a path in pieces of whole names.
    using Path = std::initializer_list<PathPiece>;
    void AddTextSelecter(Path path, CStringT* target);
    void AddNodeListEventListener(unsigned id, Path path);

    /// Reads the whole text and raises the events in document order. 1 where it is well-formed, else 0, with everything
    /// that stood before the fault delivered. An exception of an event ends the parse and comes out here, and so does
    /// XmlLimitPassed.
    int ParseXML(const CStringT& text);

    /// The same of UTF-8, which is read where it stands. What is no UTF-8 is a fault of the text.
    int ParseUtf8(std::string_view text);

    /// The same with UTF-8 that comes in pieces, `last` with the last of them. 1 where all is well so far.
    int ParsePiece(std::string_view piece, bool last);

private:
    class Reader;
    std::unique_ptr<Reader> reader_;
};

}  // namespace EXPAT_EX
