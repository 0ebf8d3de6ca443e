#include "service/xml/Reader.h"

#include <expat.h>

#include <algorithm>
#include <climits>
#include <exception>
#include <memory>

#include "service/base/Percent.h"
#include "service/base/Refusal.h"
#include "service/base/Text.h"

namespace service::xml {

namespace {

constexpr std::size_t kMaxDepth = 100;  // what follows the tree calls itself for each level

[[noreturn]] void refuse(const std::string& what)
{
    throw Refusal(exceptionid::kBadXml, "the XML is not well-formed: " + what);
}

std::string decoded(std::string text, Texts texts)
{
    if (texts == Texts::plain || text.empty()) return text;
    std::optional<std::string> plain = percentDecoded(text);
    if (!plain) refuse("a text holds a broken percent escape");
    if (const std::string fault = faultOf(*plain); !fault.empty()) refuse("a text holds " + fault);
    return std::move(*plain);
}

struct FreeParser {
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
};

// Makes the tree of what expat tells of a document. Nothing is thrown through expat: a handler that cannot go on ends
// the parse, and its reason comes out of run().
class Builder {
public:
    explicit Builder(Texts texts) : texts_(texts), parser_(XML_ParserCreate("UTF-8"))
    {
        if (!parser_) throw std::bad_alloc();
        XML_SetUserData(parser_.get(), this);
        XML_SetElementHandler(parser_.get(), onStart, onEnd);
        XML_SetCharacterDataHandler(parser_.get(), onText);
        XML_SetStartDoctypeDeclHandler(parser_.get(), onDocumentType);
    }

    Node run(std::string_view document)
    {
        if (document.size() > INT_MAX) throw Refusal(exceptionid::kLimitExceeded, "the XML is too long");
        const XML_Status status =
            XML_Parse(parser_.get(), document.data(), static_cast<int>(document.size()), XML_TRUE);
        if (failure_) std::rethrow_exception(failure_);
        if (status != XML_STATUS_OK) refuse(XML_ErrorString(XML_GetErrorCode(parser_.get())));
        return std::move(outer_.children.front());
    }

private:
    template <class Work>
    static void guarded(void* builder, const Work& work)
    {
        auto& self = *static_cast<Builder*>(builder);
        try {
            if (!self.failure_) work(self);
        } catch (...) {
            self.failure_ = std::current_exception();
            XML_StopParser(self.parser_.get(), XML_FALSE);
        }
    }

    static void XMLCALL onStart(void* builder, const XML_Char* name, const XML_Char** attributes)
    {
        guarded(builder, [=](Builder& self) { self.start(name, attributes); });
    }

    static void XMLCALL onEnd(void* builder, const XML_Char* /*name*/)
    {
        guarded(builder, [](Builder& self) { self.end(); });
    }

    static void XMLCALL onText(void* builder, const XML_Char* text, int length)
    {
        guarded(builder,
                [=](Builder& self) { self.open_.back()->text.append(text, static_cast<std::size_t>(length)); });
    }

    static void XMLCALL onDocumentType(void* builder, const XML_Char* /*name*/, const XML_Char* /*system*/,
                                       const XML_Char* /*publicID*/, int /*hasInternalSubset*/)
    {
        guarded(builder, [](Builder&) {
            throw Refusal(exceptionid::kBadXml, "the XML holds a declaration, which is not accepted");
        });
    }

    void start(const XML_Char* name, const XML_Char** attributes)
    {
        if (open_.size() > kMaxDepth) {
            throw Refusal(exceptionid::kLimitExceeded, "the XML is nested deeper than " + std::to_string(kMaxDepth));
        }
        Node& node = open_.back()->add(name);
        for (; *attributes != nullptr; attributes += 2) node.attributes.emplace_back(attributes[0], attributes[1]);
        open_.push_back(&node);
    }

    void end()
    {
        Node& node = *open_.back();
        node.text = decoded(std::move(node.text), texts_);
        open_.pop_back();
    }

    Texts texts_;
    std::unique_ptr<XML_ParserStruct, FreeParser> parser_;
    std::exception_ptr failure_;
    Node outer_;                        // holds the document's element
    std::vector<Node*> open_{&outer_};  // each is the last child of the one before, so that none moves while it is open
};

bool isPlainName(std::string_view text)
{
    const auto isStart = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == ':';
    };
    return !text.empty() && isStart(text.front()) && std::ranges::all_of(text, [&](char c) {
        return isStart(c) || (c >= '0' && c <= '9') || c == '-' || c == '.';
    });
}

}  // namespace

Node read(std::string_view text, Texts texts)
{
    return Builder(texts).run(text);
}

bool isName(std::string_view text)
{
    if (isPlainName(text)) return true;
    try {
        return read("<" + std::string(text) + "/>", Texts::plain).name == text;
    } catch (const Refusal&) {
        return false;
    }
}

}  // namespace service::xml
