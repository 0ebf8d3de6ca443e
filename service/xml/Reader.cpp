#include "service/xml/Reader.h"

#include <expat.h>

#include <algorithm>
#include <array>
#include <climits>
#include <exception>
#include <map>
#include <memory>
#include <mutex>
#include <thread>

#include "service/base/Percent.h"
#include "service/base/Refusal.h"
#include "service/base/Secret.h"
#include "service/base/Text.h"

namespace service::xml {

namespace {

constexpr std::size_t kMaxDepth = 100;  // what follows the tree calls itself for each level

[[noreturn]] void refuse(const std::string& what)
{
    throw Refusal(exceptionid::kBadXml, "the XML is not well-formed: " + what);
}

// So that nobody outside can choose names that fall together in expat's tables. It takes none that is 0.
unsigned long salt()
{
    static const unsigned long kSalt = static_cast<unsigned long>(randomNumber()) | 1U;
    return kSalt;
}

std::string decoded(std::string text, Texts texts)
{
    if (texts == Texts::plain || text.empty()) return text;
    std::optional<std::string> plain = percentDecoded(text);
    if (!plain) refuse("a text holds a broken percent escape");
    if (const std::string fault = faultOf(*plain); !fault.empty()) refuse("a text holds " + fault);
    return std::move(*plain);
}

// One for each thread that asks. What a thread has of its own is gone, with some compilers, before its destructor runs.
template <class T>
T& ownOfThread()
{
    static std::mutex mutex;
    static std::map<std::thread::id, T> all;
    const std::scoped_lock lock(mutex);
    return all[std::this_thread::get_id()];
}

struct FreeParser {
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
};

// Kept from one document to the next, each thread's own: to make a parser and to ask the system for a random number
// takes longer than to read a request. What a large document made it take goes with it.
class KeptParser {
public:
    explicit KeptParser(std::size_t size) : isKept_(size <= kMostKept)
    {
        parser_ = isKept_ && kept() ? std::move(kept()) : std::unique_ptr<XML_ParserStruct, FreeParser>(newParser());
    }
    ~KeptParser()
    {
        if (isKept_ && XML_ParserReset(parser_.get(), "UTF-8") == XML_TRUE) kept() = std::move(parser_);
    }
    KeptParser(const KeptParser&) = delete;
    KeptParser& operator=(const KeptParser&) = delete;

    XML_Parser get() const { return parser_.get(); }

private:
    static constexpr std::size_t kMostKept = std::size_t{64} * 1024;

    static std::unique_ptr<XML_ParserStruct, FreeParser>& kept()
    {
        return ownOfThread<std::unique_ptr<XML_ParserStruct, FreeParser>>();
    }

    static XML_Parser newParser()
    {
        XML_ParserStruct* const parser = XML_ParserCreate("UTF-8");
        if (parser == nullptr) throw std::bad_alloc();
        return parser;
    }

    bool isKept_;
    std::unique_ptr<XML_ParserStruct, FreeParser> parser_;
};

// Makes the tree of what expat tells of a document. Nothing is thrown through expat: a handler that cannot go on ends
// the parse, and its reason comes out of run().
class Builder {
public:
    Builder(Texts texts, std::size_t size) : texts_(texts), parser_(size)
    {
        XML_SetHashSalt(parser_.get(), salt());
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
    KeptParser parser_;
    std::exception_ptr failure_;
    Node outer_;                        // holds the document's element
    std::vector<Node*> open_{&outer_};  // each is the last child of the one before, so that none moves while it is open
};

// The last few small documents that a thread has read: hosts send the same scripts again and again.
class LastRead {
public:
    static constexpr std::size_t kLargest = 4096;

    const Node* find(std::string_view text, Texts texts) const
    {
        for (const Document& each : documents_) {
            if (each.text == text && each.texts == texts) return &each.node;
        }
        return nullptr;
    }

    const Node& keep(std::string_view text, Texts texts, Node node)
    {
        Document& place = documents_.at(next_++ % documents_.size());
        place = {std::string(text), texts, std::move(node)};
        return place.node;
    }

private:
    struct Document {
        std::string text;
        Texts texts = Texts::plain;
        Node node;
    };
    std::array<Document, 8> documents_;
    std::size_t next_ = 0;
};

enum class In : unsigned char { none, rest, start };  // where in a plain name a byte may stand

constexpr std::array<In, 256> placesInName()
{
    std::array<In, 256> places{};
    for (const char c : std::string_view("0123456789-.")) places[static_cast<unsigned char>(c)] = In::rest;
    for (const char c : std::string_view("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ_:")) {
        places[static_cast<unsigned char>(c)] = In::start;
    }
    return places;
}

bool isPlainName(std::string_view text)
{
    static constexpr std::array<In, 256> kPlaces = placesInName();
    const auto place = [](char c) { return kPlaces[static_cast<unsigned char>(c)]; };
    return !text.empty() && place(text.front()) == In::start &&
           std::ranges::all_of(text, [&](char c) { return place(c) != In::none; });
}

}  // namespace

Node read(std::string_view text, Texts texts)
{
    if (text.empty() || text.size() > LastRead::kLargest) return Builder(texts, text.size()).run(text);
    auto& last = ownOfThread<LastRead>();
    if (const Node* const known = last.find(text, texts)) return *known;
    return last.keep(text, texts, Builder(texts, text.size()).run(text));
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
