#include "pvutil/XmlParser.h"

#include <expat.h>

#include <new>
#include <utility>

#include "pvutil/IdlePool.h"
#include "pvutil/Process.h"

namespace EXPAT_EX {

namespace {

static_assert(sizeof(XML_Char) == 1, "replies are read as the UTF-8 that they come in");

constinit kzn::pvutil::IdlePool<XmlParser> g_idle;

// What a parser keeps of a text, to use the room again, is no more than a few times its size.
constexpr std::size_t kMostRead = std::size_t{64} << 10;

constexpr const char* kEncoding = "UTF-8";

}  // namespace

void XmlParser::Free::operator()(XML_Parser parser) const noexcept
{
    XML_ParserFree(parser);
}

XmlParser::XmlParser() : parser_(XML_ParserCreate(kEncoding))
{
    if (!parser_) throw std::bad_alloc();
    hasSalt_ = kzn::pvutil::fillAtRandom(salt_);
    salt();
}

// Expat would ask the system for another one before each text; it does where there is none here.
bool XmlParser::salt() noexcept
{
    return !hasSalt_ || XML_SetHashSalt16Bytes(parser_.get(), salt_.data()) == XML_TRUE;
}

// The encoding by itself: a parser that is reset with one does not say that it had no memory for it.
bool XmlParser::restart() noexcept
{
    return XML_ParserReset(parser_.get(), nullptr) == XML_TRUE &&
           XML_SetEncoding(parser_.get(), kEncoding) == XML_STATUS_OK && salt();
}

std::unique_ptr<XmlParser> takeParser()
{
    auto parser = g_idle.take();
    return parser ? std::move(parser) : std::make_unique<XmlParser>();
}

void giveBack(std::unique_ptr<XmlParser> parser, std::size_t read) noexcept
{
    if (parser && read <= kMostRead && parser->restart()) g_idle.giveBack(std::move(parser));
}

void dropParsers() noexcept
{
    g_idle.drop();
}

}  // namespace EXPAT_EX
