#include "service/http/Form.h"

#include <algorithm>
#include <utility>

#include "service/base/Percent.h"
#include "service/base/Refusal.h"
#include "service/base/Text.h"
#include "service/xml/Reader.h"

namespace service::http {

namespace {

constexpr std::size_t kMaxFields = 64;

[[noreturn]] void refuse(const std::string& reason)
{
    throw Refusal(exceptionid::kBadRequest, reason);
}

std::string decodedOrRefused(std::string_view name, std::string_view value)
{
    std::optional<std::string> text = percentDecoded(value);
    if (!text) refuse("the form field " + inQuotes(name) + " holds a broken percent escape");
    if (const std::string fault = faultOf(*text); !fault.empty()) {
        refuse("the form field " + inQuotes(name) + " holds " + fault);
    }
    return std::move(*text);
}

}  // namespace

Form Form::fromUrlEncoded(std::string_view body)
{
    Form form;
    while (!body.empty()) {
        const std::string_view piece = body.substr(0, body.find('&'));
        if (!piece.empty()) form.addPiece(piece);
        body.remove_prefix(std::min(body.size(), piece.size() + 1));
    }
    return form;
}

void Form::addPiece(std::string_view piece)
{
    const std::size_t equals = piece.find('=');
    const std::string_view rawValue = equals == std::string_view::npos ? std::string_view() : piece.substr(equals + 1);
    std::string name = decodedOrRefused("name", piece.substr(0, equals));
    std::string value = decodedOrRefused(name, rawValue);
    add(std::move(name), std::move(value));
    if (rawValue.starts_with('<')) {
        fields_.back().value = rawValue;
        fields_.back().literalXml = true;
    }
}

void Form::add(std::string name, std::string value)
{
    if (fields_.size() == kMaxFields) refuse("the form has too many fields");
    if (find(name) != nullptr) refuse("the form field " + inQuotes(name) + " stands twice");
    fields_.push_back({std::move(name), std::move(value), false});
}

const Form::Field* Form::find(std::string_view name) const
{
    for (const Field& field : fields_) {
        if (field.name == name) return &field;
    }
    return nullptr;
}

bool Form::has(std::string_view name) const
{
    return find(name) != nullptr;
}

void Form::expectFields(std::initializer_list<std::string_view> names) const
{
    for (const Field& field : fields_) {
        if (std::ranges::find(names, field.name) == names.end()) refuse("unknown form field " + inQuotes(field.name));
    }
}

std::string Form::text(std::string_view name) const
{
    const Field* const field = find(name);
    if (field == nullptr) return {};
    return field->literalXml ? decodedOrRefused(name, field->value) : field->value;
}

std::string Form::required(std::string_view name) const
{
    std::string value = text(name);
    if (value.empty()) refuse("the form field " + inQuotes(name) + " is missing");
    return value;
}

xml::Node Form::xml(std::string_view name) const
{
    const Field* const field = find(name);
    if (field == nullptr || field->value.empty()) refuse("the form field " + inQuotes(name) + " is missing");
    return xml::read(field->value, field->literalXml ? xml::Texts::percentEncoded : xml::Texts::plain);
}

}  // namespace service::http
