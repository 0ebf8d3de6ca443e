#include "pvutil/XmlHandler.h"

#include <expat.h>

#include <array>
#include <exception>
#include <limits>
#include <new>
#include <utility>

#include "pvutil/Limits.h"
#include "pvutil/XmlPathTree.h"

namespace EXPAT_EX {

using kzn::pvutil::stringex::CharT;
using kzn::pvutil::stringex::CStringView;

static_assert(sizeof(XML_Char) == sizeof(CharT), "expat's 16-bit build reads the text as it is");

namespace limits = kzn::pvutil::limits;

namespace {

struct FreeParser {
    void operator()(XML_Parser parser) const noexcept { XML_ParserFree(parser); }
};
using Parser = std::unique_ptr<XML_ParserStruct, FreeParser>;

// Expat has an integer type of its own for the same 16-bit units.
const CharT* units(const XML_Char* text) noexcept
{
    return reinterpret_cast<const CharT*>(text);
}

// Forced, so that a declaration in the text cannot change it.
const XML_Char* forcedEncoding() noexcept
{
    static constexpr std::array<XML_Char, 9> kUtf16{'U', 'T', 'F', '-', '1', '6', 'L', 'E', 0};
    return kUtf16.data();
}

}  // namespace

// Keeps a cursor in the tree of names, and outside of it only how deep it is.
class CXMLHandler::Reader {
public:
    explicit Reader(CXMLHandler& handler) : handler_(handler) {}

    XmlPathNode& at(const CStringT& path) { return root_.at(path); }

    int read(CStringView piece, bool last)
    {
        if (!parser_) begin();
        isWell_ = feed(piece, last) && isWell_;  // fed again after a fault, expat may forget it
        std::exception_ptr thrown = std::exchange(thrown_, nullptr);
        // No fault of the text: half of it has been read as if it were all.
        if (!thrown && XML_GetErrorCode(parser_.get()) == XML_ERROR_NO_MEMORY)
            thrown = std::make_exception_ptr(std::bad_alloc());
        if (last || thrown) parser_.reset();
        if (thrown) std::rethrow_exception(thrown);
        return isWell_ ? 1 : 0;
    }

    void abandon() noexcept { parser_.reset(); }

private:
    void begin()
    {
        parser_.reset(XML_ParserCreate(forcedEncoding()));
        if (!parser_) throw std::bad_alloc();
        root_.restart();
        cursor_ = &root_;
        depth_ = outside_ = 0;
        isWell_ = true;
        XML_SetUserData(parser_.get(), this);
        XML_SetElementHandler(parser_.get(), &Reader::onStart, &Reader::onEnd);
        XML_SetCharacterDataHandler(parser_.get(), &Reader::onText);
        XML_SetStartDoctypeDeclHandler(parser_.get(), &Reader::onDoctype);
    }

    bool feed(CStringView piece, bool last)
    {
        constexpr std::size_t kMost = std::numeric_limits<int>::max() / sizeof(CharT);
        if (piece.size() > kMost) return false;
        const auto bytes = static_cast<int>(piece.size() * sizeof(CharT));
        return XML_Parse(parser_.get(), reinterpret_cast<const char*>(piece.data()), bytes, last) == XML_STATUS_OK;
    }

    // Nothing may unwind through expat, which is C: the exception waits until the parse has stopped.
    template <typename Step>
    static void guarded(void* self, Step step) noexcept
    {
        auto& reader = *static_cast<Reader*>(self);
        if (reader.thrown_) return;  // a stopped parser may still report the end of an empty element
        try {
            step(reader);
        } catch (...) {
            reader.thrown_ = std::current_exception();
            XML_StopParser(reader.parser_.get(), XML_FALSE);
        }
    }

    static void XMLCALL onStart(void* self, const XML_Char* name, const XML_Char**)
    {
        guarded(self, [name](Reader& reader) { reader.start(units(name)); });
    }

    static void XMLCALL onEnd(void* self, const XML_Char*)
    {
        guarded(self, [](Reader& reader) { reader.end(); });
    }

    static void XMLCALL onText(void* self, const XML_Char* text, int length)
    {
        guarded(self, [text, length](Reader& reader) { reader.text(units(text), static_cast<std::size_t>(length)); });
    }

    static void XMLCALL onDoctype(void* self, const XML_Char*, const XML_Char*, const XML_Char*, int)
    {
        XML_StopParser(static_cast<Reader*>(self)->parser_.get(), XML_FALSE);
    }

    void start(const CharT* name)
    {
        if (++depth_ > limits::kXmlDepth) throw XmlLimitPassed("The reply is nested too deeply.");
        XmlPathNode* child = outside_ == 0 ? cursor_->find(name) : nullptr;
        if (!child) {
            ++outside_;
            return;
        }
        cursor_ = child;
        cursor_->text.clear();
        if (!cursor_->listeners.empty() && ++cursor_->items > limits::kXmlItems)
            throw XmlLimitPassed("A list of the reply is too long.");
        for (const unsigned id : cursor_->listeners) handler_.OnStartNodeListEvent(id);
    }

    void end()
    {
        --depth_;
        if (outside_ != 0) {
            --outside_;
            return;
        }
        cursor_->deliver();
        for (const unsigned id : cursor_->listeners) handler_.OnEndNodeListEvent(id);
        cursor_ = cursor_->parent();
    }

    void text(const CharT* text, std::size_t length)
    {
        if (outside_ != 0 || cursor_->targets.empty()) return;
        if (length > limits::kXmlTextUnits - cursor_->text.size())
            throw XmlLimitPassed("A text of the reply is too long.");
        cursor_->text.append(text, length);
    }

    CXMLHandler& handler_;
    XmlPathNode root_{CStringT(), nullptr};
    Parser parser_;
    XmlPathNode* cursor_ = nullptr;
    std::size_t depth_ = 0;
    std::size_t outside_ = 0;  // of these, below what the tree knows
    bool isWell_ = true;
    std::exception_ptr thrown_;
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

void CXMLHandler::AddNodeListEventListener(unsigned id, const CStringT& path)
{
    reader_->at(path).listeners.push_back(id);
}

int CXMLHandler::ParseXML(const CStringT& text)
{
    reader_->abandon();
    return reader_->read(text, true);
}

int CXMLHandler::ParsePiece(CStringView piece, bool last)
{
    return reader_->read(piece, last);
}

}  // namespace EXPAT_EX
