#include "tests/service/Talk.h"

#include <array>
#include <boost/asio/buffer.hpp>
#include <boost/asio/buffers_iterator.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http/message.hpp>
#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/read.hpp>
#include <boost/beast/http/string_body.hpp>
#include <limits>
#include <pugixml.hpp>

#include "tests/service/Socket.h"

namespace service::test {

namespace wire = boost::beast::http;

namespace {

bool isUnreserved(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
           std::string_view("-_.~").find(c) != std::string_view::npos;
}

}  // namespace

std::string encoded(std::string_view text)
{
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string out;
    for (const char c : text) {
        if (isUnreserved(c)) {
            out += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        out += '%';
        out += kDigits[byte >> 4U];
        out += kDigits[byte & 0x0FU];
    }
    return out;
}

std::vector<std::string> textsAt(const std::string& reply, const std::string& path)
{
    pugi::xml_document document;
    if (!document.load_string(reply.c_str(), pugi::parse_default | pugi::parse_ws_pcdata_single)) return {"<not XML>"};
    std::vector<std::string> texts;
    for (const pugi::xpath_node& node : document.select_nodes(path.c_str()))
        texts.emplace_back(node.node().text().get());
    return texts;
}

std::string textAt(const std::string& reply, const std::string& path)
{
    const std::vector<std::string> texts = textsAt(reply, path);
    return texts.empty() ? std::string() : texts.front();
}

Talk::Talk(unsigned short port) : connection_(std::make_unique<Socket>(port)) {}

Talk::~Talk() = default;

HttpReply Talk::post(const std::string& target, const std::string& body, const std::string& contentType)
{
    return send("POST", target, body, "Content-Type: " + contentType + "\r\n");
}

HttpReply Talk::send(const std::string& method, const std::string& target, const std::string& body,
                     const std::string& headers)
{
    std::string head = method + ' ' + target + " HTTP/1.1\r\n" + headers;
    if (headers.find("Host:") == std::string::npos) head += "Host: " + host() + "\r\n";
    if (!body.empty() || method != "GET") head += "Content-Length: " + std::to_string(body.size()) + "\r\n";
    sendRaw(head + "\r\n" + body);
    return readReply();
}

std::string Talk::host() const
{
    boost::system::error_code ignored;
    return "127.0.0.1:" + std::to_string(connection_->socket.remote_endpoint(ignored).port());
}

HttpReply Talk::get(const std::string& target)
{
    return send("GET", target, {}, {});
}

HttpReply Talk::readReply()
{
    boost::beast::flat_buffer buffer;
    wire::response_parser<wire::string_body> parser;
    parser.body_limit(std::numeric_limits<std::uint64_t>::max());
    boost::system::error_code error;
    wire::read(connection_->socket, buffer, parser, error);
    if (error) return {};
    auto& message = parser.get();
    const auto type = message[wire::field::content_type];
    return {message.result_int(), {type.data(), type.size()}, std::move(message.body()), message.keep_alive()};
}

void Talk::sendRaw(std::string_view bytes)
{
    boost::system::error_code ignored;
    boost::asio::write(connection_->socket, boost::asio::buffer(bytes.data(), bytes.size()), ignored);
}

std::string Talk::readToEnd()
{
    std::string text;
    for (std::string more = readMore(); !more.empty(); more = readMore()) text += more;
    return text;
}

std::string Talk::readMore()
{
    std::array<char, 4096> piece{};
    boost::system::error_code ended;
    return {piece.data(), connection_->socket.read_some(boost::asio::buffer(piece), ended)};
}

void Talk::hangUp()
{
    boost::system::error_code ignored;
    connection_->socket.shutdown(boost::asio::ip::tcp::socket::shutdown_both, ignored);
}

std::string form(unsigned short port, const std::string& body)
{
    return Talk(port).post("/kznconnect/op.do", body).body;
}

}  // namespace service::test
