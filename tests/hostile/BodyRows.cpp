// Chunks, codings, and what comes behind a reply. Wine reads a size of a chunk up to where it is none, in 32 bits, and
// passes over what stands before the next; a coding that is not just "chunked" is none to it, and the end of the
// connection inside it a reply that is cut off here. Real Windows documents ERROR_WINHTTP_INVALID_SERVER_RESPONSE for
// both.
#include "pvutil/Limits.h"
#include "tests/hostile/Rows.h"

namespace kzn::test {

namespace limits = pvutil::limits;

namespace {

const std::string kHead = "HTTP/1.1 200 OK\r\nContent-Type: text/xml\r\n";
const std::string kChunked = kHead + "Transfer-Encoding: chunked\r\n\r\n";
const std::string kSize = "3E";  // of the document
const std::string kChunk = kSize + "\r\n" + kSuccess + "\r\n";
const std::string kLast = "0\r\n\r\n";

std::string coded(const std::string& coding)
{
    return kHead + "Transfer-Encoding: " + coding + "\r\n\r\n" + kChunk + kLast;
}

std::string inChunksOf(std::size_t size)
{
    constexpr const char* kDigits = "0123456789ABCDEF";
    std::string chunks;
    for (std::size_t at = 0; at < kSuccess.size(); at += size) {
        const std::string piece = kSuccess.substr(at, size);
        chunks += std::string{kDigits[piece.size() / 16], kDigits[piece.size() % 16]} + "\r\n" + piece + "\r\n";
    }
    return kChunked + chunks + kLast;
}

std::vector<Row> chunks()
{
    return {
        sends("chunks", kChunked + kChunk + kLast, plain()),
        sends("chunks of a byte", inChunksOf(1), plain()),
        sends("chunks of seven bytes", inChunksOf(7), plain()),
        sends("a size in small letters", kChunked + "3e\r\n" + kSuccess + "\r\n" + kLast, plain()),
        sends("a size with zeros before it", kChunked + "0000000" + kChunk + kLast, plain()),
        sends("an extension", kChunked + kSize + ";a=b;c=\"d\"\r\n" + kSuccess + "\r\n" + kLast, plain()),
        sends("an extension of a megabyte",
              kChunked + kSize + ";" + std::string(1'000'000, 'e') + "\r\n" + kSuccess + "\r\n" + kLast, plain()),
        sends("a trailer", kChunked + kChunk + "0\r\nX-After: 1\r\n\r\n", plain()),
        sends("trailers beyond the limit",
              kChunked + kChunk + "0\r\n" + repeated("X: " + std::string(1000, 'x') + "\r\n", 300) + "\r\n", tooLarge(),
              plain()),
        sends("a trailer of another length", kChunked + kChunk + "0\r\nContent-Length: 5\r\n\r\n", plain()),
        sends("no chunk but the last", kChunked + kLast, senseless()),
        closes("no chunk at all", kChunked, cutOff()),
        closes("no last chunk", kChunked + kChunk, cutOff()),
        closes("a size alone", kChunked + kSize, cutOff()),
        closes("a chunk cut off", kChunked + kSize + "\r\n" + kSuccess.substr(0, 20), cutOff()),
        closes("a size of letters", kChunked + "xyz\r\n" + kSuccess + "\r\n" + kLast, notHttp(), senseless()),
        closes("an empty size", kChunked + "\r\n" + kSuccess + "\r\n" + kLast, notHttp(), senseless()),
        closes("a size below nothing", kChunked + "-3E\r\n" + kSuccess + "\r\n" + kLast, notHttp(), plain()),
        closes("a size with a sign", kChunked + "+3E\r\n" + kSuccess + "\r\n" + kLast, notHttp(), plain()),
        closes("a size of twenty digits", kChunked + std::string(20, 'F') + "\r\n" + kSuccess, notHttp(), cutOff()),
        closes("a size of 4 GiB and a document", kChunked + "10000003E\r\n" + kSuccess + "\r\n" + kLast, cutOff(),
               plain()),
        closes("a smaller size", kChunked + "10\r\n" + kSuccess + "\r\n" + kLast, notHttp(), senseless()),
        closes("a larger size", kChunked + "FF\r\n" + kSuccess + "\r\n" + kLast, cutOff()),
        closes("no line break behind a chunk", kChunked + kSize + "\r\n" + kSuccess + kLast, notHttp(), plain()),
        sends("line feeds alone", kChunked + kSize + "\n" + kSuccess + "\n0\n\n", plain()),
        stalls("a size, and silence", kChunked + kSize, silence()),
        stalls("a chunk, and silence", kChunked + kChunk, silence()),
        stalls("an extension for ever", kChunked + "3E;" + std::string(limits::kFramingBytes + 3'000'000, 'e'),
               tooLarge()),
    };
}

std::vector<Row> codings()
{
    const std::string length = "Content-Length: " + std::to_string(kSuccess.size()) + "\r\n";
    return {
        sends("chunked in other letters", coded("CHUNKED"), plain()),
        closes("a coding that nobody knows", coded("x-unknown"), notHttp(), cutOff()),
        closes("a coding before the chunks", coded("x-unknown, chunked"), notHttp(), cutOff()),
        closes("gzip that is none", coded("gzip, chunked"), notHttp(), cutOff()),
        closes("chunks twice", coded("chunked, chunked"), plain(), cutOff()),
        closes("identity", kHead + "Transfer-Encoding: identity\r\n" + length + "\r\n" + kSuccess, plain()),
        closes("an empty coding", kHead + "Transfer-Encoding:\r\n" + length + "\r\n" + kSuccess, plain()),
        sends("chunks and a length", kHead + length + "Transfer-Encoding: chunked\r\n\r\n" + kChunk + kLast, plain()),
        sends("a length and chunks", kHead + "Transfer-Encoding: chunked\r\n" + length + "\r\n" + kChunk + kLast,
              plain()),
        closes("chunks and a length that is no number",
               kHead + "Content-Length: x\r\nTransfer-Encoding: chunked\r\n\r\n" + kChunk + kLast, notHttp()),
        closes("chunks in version 1.0", "HTTP/1.0 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n" + kChunk + kLast,
               plain()),
        sends("a compressed document that is none", kHead + "Content-Encoding: gzip\r\n" + length + "\r\n" + kSuccess,
              plain()),
    };
}

std::vector<Row> behind()
{
    const std::string ok = replyWith("HTTP/1.1 200 OK");
    const std::string other =
        replyOf("<kznapi><response><result>FAILURE</result><reason>nobody's</reason></response></kznapi>");
    return {
        sends("a second reply", ok + other, plain()),
        sends("a second reply behind chunks", kChunked + kChunk + kLast + other, plain()),
        sends("a second reply behind a trailer", kChunked + kChunk + "0\r\nX: 1\r\n\r\n" + other, plain()),
        sends("a line break behind", ok + "\r\n", plain()),
        sends("zeros behind", ok + std::string(1000, '\0'), plain()),
        sends("seventy kilobytes behind", ok + std::string(70'000, 'x'), plain()),
        closes("a second reply, and the end", ok + other, plain()),
        {"a late second reply", Script().send(ok).pause(std::chrono::milliseconds(15)).send(other), plain(), {}},
        {"a late notice",
         Script().send(ok).pause(std::chrono::milliseconds(15)).send(replyText(408, "", "")).close(),
         plain(),
         {}},
    };
}

}  // namespace

std::vector<Row> bodyRows()
{
    std::vector<Row> all;
    for (auto some : {&chunks, &codings, &behind})
        for (Row& row : some()) all.push_back(std::move(row));
    return all;
}

}  // namespace kzn::test
