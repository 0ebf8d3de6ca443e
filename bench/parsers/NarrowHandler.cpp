// The handler over the 8-bit build: the same cursor in the same tree of names, but names and texts are UTF-8 inside. It
// stands in for the library's own under everything else that reads replies.
#include <expat.h>

#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "pvutil/XmlHandler.h"

namespace EXPAT_EX {

using kzn::pvutil::stringex::CStringView;
using kzn::pvutil::stringex::FromUtf8;
using kzn::pvutil::stringex::ToUtf8;

static_assert(sizeof(XML_Char) == 1, "this is the 8-bit build");

namespace {

struct FreeParser {
    void operator()(XML_Parser parser) const noexcept { XML_ParserFree(parser); }
};

struct Node {
    std::string name;
    Node* parent = nullptr;
    std::vector<std::unique_ptr<Node>> children;
    std::size_t next = 0;
    std::vector<CStringT*> targets;
    std::vector<unsigned> listeners;
    std::string text;

    Node& child(std::string_view wanted)
    {
        for (const auto& child : children)
            if (child->name == wanted) return *child;
        children.push_back(std::make_unique<Node>());
        children.back()->name = wanted;
        children.back()->parent = this;
        return *children.back();
    }

    Node* find(const char* wanted) noexcept
    {
        for (std::size_t tried = 0; tried < children.size(); ++tried) {
            if (next == children.size()) next = 0;
            Node& child = *children[next++];
            if (std::strcmp(child.name.c_str(), wanted) == 0) return &child;
        }
        return nullptr;
    }
};

// Most texts are ASCII, which widens at once.
void widen(const std::string& utf8, CStringT& target)
{
    unsigned char any = 0;
    for (const char c : utf8) any |= static_cast<unsigned char>(c);
    if (any < 0x80) target.assign(utf8.begin(), utf8.end());
    else target = FromUtf8(utf8);
}

}  // namespace

class CXMLHandler::Reader {
public:
    explicit Reader(CXMLHandler& handler) : handler_(handler) {}

    Node& at(const CStringT& path)
    {
        const std::string utf8 = ToUtf8(path);
        Node* node = &root_;
        std::string_view rest = utf8;
        while (!rest.empty()) {
            const std::size_t end = rest.find('/');
            if (end != 0) node = &node->child(rest.substr(0, end));
            rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
        }
        return *node;
    }

    int read(CStringView text)
    {
        const std::string utf8 = ToUtf8(CStringT(text));
        const std::unique_ptr<XML_ParserStruct, FreeParser> parser(XML_ParserCreate("UTF-8"));
        if (!parser) throw std::bad_alloc();
        parser_ = parser.get();
        cursor_ = &root_;
        outside_ = 0;
        XML_SetUserData(parser_, this);
        XML_SetElementHandler(parser_, &Reader::onStart, &Reader::onEnd);
        XML_SetCharacterDataHandler(parser_, &Reader::onText);
        XML_SetStartDoctypeDeclHandler(parser_, &Reader::onDoctype);
        return XML_Parse(parser_, utf8.data(), static_cast<int>(utf8.size()), XML_TRUE) == XML_STATUS_OK ? 1 : 0;
    }

private:
    static Reader& self(void* data) { return *static_cast<Reader*>(data); }
    static void onStart(void* data, const char* name, const char**) { self(data).start(name); }
    static void onEnd(void* data, const char*) { self(data).end(); }
    static void onText(void* data, const char* text, int length) { self(data).text(text, length); }
    static void onDoctype(void* data, const char*, const char*, const char*, int)
    {
        XML_StopParser(self(data).parser_, XML_FALSE);
    }

    void start(const char* name)
    {
        Node* const child = outside_ == 0 ? cursor_->find(name) : nullptr;
        if (!child) {
            ++outside_;
            return;
        }
        cursor_ = child;
        cursor_->text.clear();
        for (const unsigned id : cursor_->listeners) handler_.OnStartNodeListEvent(id);
    }

    void end()
    {
        if (outside_ != 0) {
            --outside_;
            return;
        }
        for (CStringT* target : cursor_->targets) widen(cursor_->text, *target);
        for (const unsigned id : cursor_->listeners) handler_.OnEndNodeListEvent(id);
        cursor_ = cursor_->parent;
    }

    void text(const char* text, int length)
    {
        if (outside_ == 0 && !cursor_->targets.empty()) cursor_->text.append(text, static_cast<std::size_t>(length));
    }

    CXMLHandler& handler_;
    Node root_;
    XML_Parser parser_ = nullptr;
    Node* cursor_ = nullptr;
    std::size_t outside_ = 0;
};

CXMLHandler::CXMLHandler() : reader_(std::make_unique<Reader>(*this)) {}
CXMLHandler::~CXMLHandler() = default;

void CXMLHandler::OnStartNodeListEvent(unsigned) {}
void CXMLHandler::OnEndNodeListEvent(unsigned) {}
void CXMLHandler::OnStartNodeEvent(unsigned) {}
void CXMLHandler::OnEndNodeEvent(unsigned) {}
void CXMLHandler::OnStartAttributeEvent(unsigned) {}
void CXMLHandler::OnEndAttributeEvent(unsigned) {}

void CXMLHandler::AddTextSelecter(const CStringT& path, CStringT* target)
{
    reader_->at(path).targets.push_back(target);
}

void CXMLHandler::AddNodeListEventListener(unsigned id, const CStringT& path)
{
    reader_->at(path).listeners.push_back(id);
}

int CXMLHandler::ParseXML(const CStringT& text)
{
    return reader_->read(text);
}

}  // namespace EXPAT_EX
