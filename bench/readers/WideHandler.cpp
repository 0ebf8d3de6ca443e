// The handler over the 16-bit build: the same cursor in a tree of names, but names and texts are UTF-16 inside, and the
// reply is made that first. It stands in for the library's own under everything else that reads replies.
#include <expat.h>

#include <array>
#include <cstddef>
#include <memory>
#include <new>
#include <string_view>
#include <vector>

#include "pvutil/XmlHandler.h"

namespace EXPAT_EX {

using kzn::pvutil::stringex::CharT;
using kzn::pvutil::stringex::CStringView;
using kzn::pvutil::stringex::FromUtf8;

static_assert(sizeof(XML_Char) == sizeof(CharT), "this is the 16-bit build");

namespace {

struct FreeParser {
    void operator()(XML_Parser parser) const noexcept { XML_ParserFree(parser); }
};

const CharT* units(const XML_Char* text) noexcept
{
    return reinterpret_cast<const CharT*>(text);
}

struct Node {
    CStringT name;
    Node* parent = nullptr;
    std::vector<std::unique_ptr<Node>> children;
    std::size_t next = 0;
    std::vector<CStringT*> targets;
    std::vector<unsigned> listeners;
    CStringT text;

    Node& child(CStringView wanted)
    {
        for (const auto& child : children)
            if (child->name == wanted) return *child;
        children.push_back(std::make_unique<Node>());
        children.back()->name = wanted;
        children.back()->parent = this;
        return *children.back();
    }

    Node* find(const CharT* wanted) noexcept
    {
        for (std::size_t tried = 0; tried < children.size(); ++tried) {
            if (next == children.size()) next = 0;
            Node& child = *children[next++];
            if (child.name == wanted) return &child;
        }
        return nullptr;
    }

    void deliver()
    {
        if (targets.empty()) return;
        for (std::size_t i = 1; i < targets.size(); ++i) *targets[i] = text;
        targets.front()->swap(text);
    }
};

}  // namespace

class CXMLHandler::Reader {
public:
    explicit Reader(CXMLHandler& handler) : handler_(handler) {}

    Node& at(CStringView path)
    {
        Node* node = &root_;
        while (!path.empty()) {
            const std::size_t end = path.find(CharT{'/'});
            if (end != 0) node = &node->child(path.substr(0, end));
            path.remove_prefix(end == CStringView::npos ? path.size() : end + 1);
        }
        return *node;
    }

    Node& at(Path path)
    {
        CStringT whole;
        for (const std::string_view piece : path) whole += FromUtf8(piece);
        return at(whole);
    }

    int read(CStringView text)
    {
        constexpr std::array<XML_Char, 9> kEncoding = {'U', 'T', 'F', '-', '1', '6', 'L', 'E', 0};
        const std::unique_ptr<XML_ParserStruct, FreeParser> parser(XML_ParserCreate(kEncoding.data()));
        if (!parser) throw std::bad_alloc();
        parser_ = parser.get();
        cursor_ = &root_;
        outside_ = 0;
        XML_SetUserData(parser_, this);
        XML_SetElementHandler(parser_, &Reader::onStart, &Reader::onEnd);
        XML_SetCharacterDataHandler(parser_, &Reader::onText);
        const auto bytes = static_cast<int>(text.size() * sizeof(CharT));
        return XML_Parse(parser_, reinterpret_cast<const char*>(text.data()), bytes, XML_TRUE) == XML_STATUS_OK ? 1 : 0;
    }

private:
    static Reader& self(void* data) { return *static_cast<Reader*>(data); }
    static void onStart(void* data, const XML_Char* name, const XML_Char**) { self(data).start(units(name)); }
    static void onEnd(void* data, const XML_Char*) { self(data).end(); }
    static void onText(void* data, const XML_Char* text, int length) { self(data).text(units(text), length); }

    void start(const CharT* name)
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
        cursor_->deliver();
        for (const unsigned id : cursor_->listeners) handler_.OnEndNodeListEvent(id);
        cursor_ = cursor_->parent;
    }

    void text(const CharT* text, int length)
    {
        if (outside_ == 0 && !cursor_->targets.empty()) cursor_->text.append(text, static_cast<std::size_t>(length));
    }

    CXMLHandler& handler_;
    Node root_;
    Node* cursor_ = nullptr;
    XML_Parser parser_ = nullptr;
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
    if (target) reader_->at(path).targets.push_back(target);
}

void CXMLHandler::AddTextSelecter(Path path, CStringT* target)
{
    if (target) reader_->at(path).targets.push_back(target);
}

void CXMLHandler::AddNodeListEventListener(unsigned id, const CStringT& path)
{
    reader_->at(path).listeners.push_back(id);
}

void CXMLHandler::AddNodeListEventListener(unsigned id, Path path)
{
    reader_->at(path).listeners.push_back(id);
}

int CXMLHandler::ParseXML(const CStringT& text)
{
    return reader_->read(text);
}

int CXMLHandler::ParseUtf8(std::string_view text)
{
    return reader_->read(FromUtf8(text));
}

}  // namespace EXPAT_EX
