#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "service/xml/Node.h"

namespace service::http {

// The fields of a request. A value is read to the next "&" and split at the first "=", so it may hold "<", "/" and "=".
class Form {
public:
    // Refuses broken escapes, bytes that are no UTF-8, characters that XML cannot carry, and a field sent twice.
    static Form fromUrlEncoded(std::string_view body);

    // For a field that arrives by another road than a form body.
    void add(std::string name, std::string value);

    bool has(std::string_view name) const;

    // Refuses a field that is none of these.
    void expectFields(std::initializer_list<std::string_view> names) const;

    // Empty where there is no such field.
    std::string text(std::string_view name) const;

    // Refused where there is no such field, or nothing in it.
    std::string required(std::string_view name) const;

    // The field's value as XML; refused where it is missing or not well-formed.
    xml::Node xml(std::string_view name) const;

private:
    struct Field {
        std::string name;
        std::string value;
        bool literalXml;  // still percent-encoded: it started with a literal "<"
    };

    const Field* find(std::string_view name) const;
    void addPiece(std::string_view piece);

    std::vector<Field> fields_;
};

}  // namespace service::http
