#include "pvutil/XmlHandler.h"

#include <expat.h>

#include <exception>
#include <limits>
#include <new>
#include <utility>

#include "pvutil/Limits.h"
#include "pvutil/Utf.h"
#include "pvutil/XmlParser.h"
#include "pvutil/XmlPathTree.h"

namespace EXPAT_EX {

using kzn::pvutil::stringex::CharT;
using kzn::pvutil::stringex::CStringView;

namespace limits = kzn::pvutil::limits;
namespace utf = kzn::pvutil::utf;

namespace {

// A surrogate without its partner is no character, in XML less than anywhere: the bytes that would stand for it are
// none of UTF-8, so the text ends there with a fault.
std::string upToLoneSurrogate(const CStringT& text)
{
    const CharT* const end = text.data() + text.size();
    for (const CharT* at = text.data(); at != end;) {
        const auto begin = at;
        const bool isLone = utf::isLoneSurrogate(at, end);
        utf::next(at, end);
        if (isLone) return kzn::pvutil::stringex::ToUtf8(CStringT(text.data(), begin)) + "\xED\xA0\x80";
    }
    return kzn::pvutil::stringex::ToUtf8(text);
}

}  // namespace

// Keeps a cursor in the tree of names, and outside of it only how deep it is.
class CXMLHandler::Reader {
public:
    explicit Reader(CXMLHandler& handler) : handler_(handler) {}
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;
    ~Reader() { abandon(); }

    XmlPathTree& tree() noexcept { return tree_; }

    XmlPathTree::Place at(const CStringT& path)
    {
        return tree_.keptAt(XmlPathTree::kRoot, kzn::pvutil::stringex::ToUtf8(path));
    }

    XmlPathTree::Place at(Path path)
    {
        XmlPathTree::Place place = XmlPathTree::kRoot;
        for (const std::string_view piece : path) place = tree_.at(place, piece);
        return place;
    }

    int read(std::string_view piece, bool last)
    {
        if (!parser_) begin();
        isWell_ = isWell_ && feed(piece, last);  // fed again after a fault, expat may forget it
        std::exception_ptr thrown = std::exchange(thrown_, nullptr);
        // No fault of the text: half of it has been read as if it were all.
        if (!thrown && XML_GetErrorCode(parser_->get()) == XML_ERROR_NO_MEMORY)
            thrown = std::make_exception_ptr(std::bad_alloc());
        if (last || thrown) abandon();
        if (thrown) std::rethrow_exception(thrown);
        return isWell_ ? 1 : 0;
    }

    void abandon() noexcept { giveBack(std::move(parser_), read_); }

private:
    void begin()
    {
        parser_ = takeParser();
        tree_.restart();
        text_.clear();
        cursor_ = XmlPathTree::kRoot;
        depth_ = outside_ = read_ = 0;
        isWell_ = true;
        XML_SetUserData(parser_->get(), this);
        XML_SetElementHandler(parser_->get(), &Reader::onStart, &Reader::onEnd);
        XML_SetCharacterDataHandler(parser_->get(), &Reader::onText);
        XML_SetStartDoctypeDeclHandler(parser_->get(), &Reader::onDoctype);
    }

    // Zeros among the first two bytes make expat read UTF-16, whatever it was told. No text of XML has any.
    bool beginsWithZeros(std::string_view piece) const noexcept
    {
        constexpr std::size_t kLookedAt = 2;
        const auto first = piece.substr(0, kLookedAt - std::min(read_, kLookedAt));
        return first.find('\0') != std::string_view::npos;
    }

    bool feed(std::string_view piece, bool last)
    {
        if (piece.size() > std::numeric_limits<int>::max() || beginsWithZeros(piece)) return false;
        read_ += piece.size();
        return XML_Parse(parser_->get(), piece.data(), static_cast<int>(piece.size()), last) == XML_STATUS_OK;
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
            XML_StopParser(reader.parser_->get(), XML_FALSE);
        }
    }

    static void XMLCALL onStart(void* self, const char* name, const char**)
    {
        guarded(self, [name](Reader& reader) { reader.start(name); });
    }

    static void XMLCALL onEnd(void* self, const char*)
    {
        guarded(self, [](Reader& reader) { reader.end(); });
    }

    static void XMLCALL onText(void* self, const char* text, int length)
    {
        guarded(self, [=](Reader& reader) { reader.text({text, static_cast<std::size_t>(length)}); });
    }

    static void XMLCALL onDoctype(void* self, const char*, const char*, const char*, int)
    {
        XML_StopParser(static_cast<Reader*>(self)->parser_->get(), XML_FALSE);
    }

    void start(const char* name)
    {
        if (++depth_ > limits::kXmlDepth) throw XmlLimitPassed("The reply is nested too deeply.");
        const auto child = outside_ == 0 ? tree_.find(cursor_, name) : XmlPathTree::kNowhere;
        if (child == XmlPathTree::kNowhere) {
            ++outside_;
            return;
        }
        cursor_ = child;
        auto& element = tree_.element(child);
        element.begin = element.counted = text_.size();
        element.units = 0;
        if (!tree_.hasListeners(child)) return;
        if (++element.items > limits::kXmlItems) throw XmlLimitPassed("A list of the reply is too long.");
        tree_.tellListeners(child, [this](unsigned id) { handler_.OnStartNodeListEvent(id); });
    }

    void end()
    {
        --depth_;
        if (outside_ != 0) {
            --outside_;
            return;
        }
        const std::size_t begin = tree_.element(cursor_).begin;
        tree_.deliver(cursor_, std::string_view(text_).substr(begin));
        text_.resize(begin);
        tree_.tellListeners(cursor_, [this](unsigned id) { handler_.OnEndNodeListEvent(id); });
        cursor_ = tree_.parent(cursor_);
    }

    void text(std::string_view piece)
    {
        if (outside_ != 0 || !tree_.hasTargets(cursor_)) return;
        text_.append(piece);
        auto& element = tree_.element(cursor_);
        // A text has no more units than bytes. Most stay below the limit by these alone.
        if (text_.size() - element.begin <= limits::kXmlTextUnits) return;
        element.units += utf::unitsOf(std::string_view(text_).substr(element.counted));
        element.counted = text_.size();
        if (element.units > limits::kXmlTextUnits) throw XmlLimitPassed("A text of the reply is too long.");
    }

    CXMLHandler& handler_;
    XmlPathTree tree_;
    std::unique_ptr<XmlParser> parser_;
    std::string text_;  // of all open elements, one behind the other
    XmlPathTree::Place cursor_ = XmlPathTree::kRoot;
    std::size_t depth_ = 0;
    std::size_t outside_ = 0;  // of these, below what the tree knows
    std::size_t read_ = 0;
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
    if (target) reader_->tree().addTarget(reader_->at(path), target);
}

void CXMLHandler::AddTextSelecter(Path path, CStringT* target)
{
    if (target) reader_->tree().addTarget(reader_->at(path), target);
}

void CXMLHandler::AddNodeListEventListener(unsigned id, const CStringT& path)
{
    reader_->tree().addListener(reader_->at(path), id);
}

void CXMLHandler::AddNodeListEventListener(unsigned id, Path path)
{
    reader_->tree().addListener(reader_->at(path), id);
}

int CXMLHandler::ParseXML(const CStringT& text)
{
    return ParseUtf8(upToLoneSurrogate(text));
}

int CXMLHandler::ParseUtf8(std::string_view text)
{
    reader_->abandon();
    return reader_->read(text, true);
}

int CXMLHandler::ParsePiece(std::string_view piece, bool last)
{
    return reader_->read(piece, last);
}

}  // namespace EXPAT_EX
