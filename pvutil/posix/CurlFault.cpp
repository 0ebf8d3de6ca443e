#include "pvutil/posix/CurlFault.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <string>
#include <system_error>
#include <utility>

#include "pvutil/Ascii.h"

namespace kzn::pvutil {

namespace {

// Causes that libcurl's code alone tells; `closed` stands for a connection that ended, before or inside the reply.
constexpr std::array<std::pair<CURLcode, HttpFault>, 30> kByCode{{
    {CURLE_URL_MALFORMAT, HttpFault::badAddress},
    {CURLE_COULDNT_RESOLVE_HOST, HttpFault::noSuchHost},
    {CURLE_COULDNT_RESOLVE_PROXY, HttpFault::proxy},
    {CURLE_PROXY, HttpFault::proxy},
    {CURLE_COULDNT_CONNECT, HttpFault::refused},
    {CURLE_OPERATION_TIMEDOUT, HttpFault::connectTimeout},
    {CURLE_PEER_FAILED_VERIFICATION, HttpFault::tlsUntrusted},
    {CURLE_SSL_ISSUER_ERROR, HttpFault::tlsUntrusted},
    {CURLE_SSL_CACERT_BADFILE, HttpFault::tlsUntrusted},
    {CURLE_SSL_CRL_BADFILE, HttpFault::tlsUntrusted},
    {CURLE_SSL_PINNEDPUBKEYNOTMATCH, HttpFault::tlsUntrusted},
    {CURLE_SSL_INVALIDCERTSTATUS, HttpFault::tlsUntrusted},
    {CURLE_SSL_CONNECT_ERROR, HttpFault::tlsFailed},
    {CURLE_SSL_CIPHER, HttpFault::tlsFailed},
    {CURLE_SSL_CERTPROBLEM, HttpFault::tlsFailed},
    {CURLE_SSL_CLIENTCERT, HttpFault::tlsFailed},
    {CURLE_SSL_ENGINE_INITFAILED, HttpFault::tlsFailed},
    {CURLE_USE_SSL_FAILED, HttpFault::tlsFailed},
    {CURLE_GOT_NOTHING, HttpFault::closed},
    {CURLE_SEND_ERROR, HttpFault::closed},
    {CURLE_RECV_ERROR, HttpFault::closed},
    {CURLE_ABORTED_BY_CALLBACK, HttpFault::closed},
    {CURLE_PARTIAL_FILE, HttpFault::cutOff},
    {CURLE_UNSUPPORTED_PROTOCOL, HttpFault::notHttp},
    {CURLE_WEIRD_SERVER_REPLY, HttpFault::notHttp},
    {CURLE_HTTP_RETURNED_ERROR, HttpFault::notHttp},
    {CURLE_BAD_CONTENT_ENCODING, HttpFault::notHttp},
    {CURLE_FILESIZE_EXCEEDED, HttpFault::tooLarge},
    {CURLE_OUT_OF_MEMORY, HttpFault::local},
    {CURLE_FAILED_INIT, HttpFault::local},
}};

// Where no connection came about the system says more.
constexpr std::array<std::pair<int, HttpFault>, 16> kByErrno{{
    {ECONNREFUSED, HttpFault::refused},
    {ENETUNREACH, HttpFault::unreachable},
    {EHOSTUNREACH, HttpFault::unreachable},
    {ENETDOWN, HttpFault::unreachable},
    {EHOSTDOWN, HttpFault::unreachable},
    {EADDRNOTAVAIL, HttpFault::unreachable},
    {EACCES, HttpFault::unreachable},
    {EPERM, HttpFault::unreachable},
    {EINVAL, HttpFault::unreachable},
    {ETIMEDOUT, HttpFault::connectTimeout},
    {EMFILE, HttpFault::local},
    {ENFILE, HttpFault::local},
    {ENOMEM, HttpFault::local},
    {ENOBUFS, HttpFault::local},
    {EAFNOSUPPORT, HttpFault::unreachable},
    {ECONNRESET, HttpFault::refused},
}};

// OpenSSL's numbers of what is wrong with a certificate. Where it found nothing (0), or was not asked because libcurl
// looks at the name first (1), it was the name.
constexpr std::array<std::pair<long, HttpFault>, 4> kByCertificate{{
    {0, HttpFault::tlsWrongName},
    {1, HttpFault::tlsWrongName},
    {9, HttpFault::tlsExpired},  // not yet valid
    {10, HttpFault::tlsExpired},
}};

template <typename Key, std::size_t count>
HttpFault found(const std::array<std::pair<Key, HttpFault>, count>& table, Key key, HttpFault otherwise) noexcept
{
    const auto row = std::find_if(table.begin(), table.end(), [key](const auto& each) { return each.first == key; });
    return row == table.end() ? otherwise : row->second;
}

int systemErrorOf(CURL* easy, const CurlRun& run) noexcept
{
    if (run.socketError() != 0) return run.socketError();
    long number = 0;
    curl.easyGetinfo(easy, CURLINFO_OS_ERRNO, &number);
    return static_cast<int>(number);
}

HttpFault certificateFault(CURL* easy) noexcept
{
    long result = 0;
    curl.easyGetinfo(easy, CURLINFO_SSL_VERIFYRESULT, &result);
    return found(kByCertificate, result, HttpFault::tlsUntrusted);
}

HttpFault endOf(std::string_view words, const CurlRun& run) noexcept
{
    if (run.phase() == HttpPhase::secure) return HttpFault::tlsFailed;
    if (!run.hasHeard()) return HttpFault::closed;
    return words.find("chunk") == std::string_view::npos ? HttpFault::cutOff : HttpFault::notHttp;
}

HttpFault faultOf(CURL* easy, CURLcode code, std::string_view words, const CurlRun& run) noexcept
{
    const HttpFault fault = found(kByCode, code, HttpFault::notHttp);
    switch (code) {
    case CURLE_COULDNT_CONNECT: return found(kByErrno, systemErrorOf(easy, run), fault);
    case CURLE_PEER_FAILED_VERIFICATION: return certificateFault(easy);
    // A line that is longer than libcurl's own limit is memory to it.
    case CURLE_OUT_OF_MEMORY: return run.hasHeard() && !run.headStands() ? HttpFault::tooLarge : fault;
    default: return fault == HttpFault::closed ? endOf(words, run) : fault;
    }
}

bool isOfTls(HttpFault fault) noexcept
{
    return fault >= HttpFault::tlsUntrusted && fault <= HttpFault::tlsFailed;
}

std::string_view trimmed(std::string_view text) noexcept
{
    return text.substr(0, text.find_last_not_of(" \r\n") + 1);
}

// "Failed to connect to HOST port N after ..." names whom libcurl meant, which may be a proxy on the server's own port.
bool namesAnother(std::string_view words, const Url& server)
{
    constexpr std::string_view kBegin = "Failed to connect to ";
    if (!words.starts_with(kBegin)) return false;
    std::string_view host = server.host;
    if (host.starts_with('[')) host = host.substr(1, host.size() - 2);
    const std::string meant = std::string(host) + " port " + std::to_string(server.port) + ' ';
    return !ascii::same(words.substr(kBegin.size(), meant.size()), meant);
}

// A proxy stands between where another than the server was connected to, and where one answered a demand for a tunnel.
// TLS begins behind its consent.
bool isProxys(CURL* easy, HttpFault fault, std::string_view words, const CurlRun& run, const HttpExchange& exchange)
{
    long answer = 0;
    curl.easyGetinfo(easy, CURLINFO_HTTP_CONNECTCODE, &answer);
    if ((answer != 0 && answer / 100 != 2) || words.starts_with("Proxy CONNECT")) return true;
    const bool onTheWay = fault == HttpFault::refused || fault == HttpFault::unreachable ||
                          fault == HttpFault::connectTimeout || (fault == HttpFault::tlsFailed && answer == 0);
    if (!onTheWay) return false;
    return namesAnother(words, exchange.url) || (run.lastPort() != 0 && run.lastPort() != exchange.url.port);
}

// The system's error is the more exact word, where there is one; what comes of our own callbacks has none.
std::string wordsFor(CURL* easy, CURLcode code, std::string_view words, const CurlRun& run)
{
    const int number = systemErrorOf(easy, run);
    if (code == CURLE_COULDNT_CONNECT && number != 0) return std::system_category().message(number);
    const bool isOurs = code == CURLE_ABORTED_BY_CALLBACK || code == CURLE_OUT_OF_MEMORY;
    if (isOurs || (code == CURLE_PARTIAL_FILE && words.empty())) return {};
    return words.empty() ? std::string(curl.easyStrerror(code)) : std::string(trimmed(words));
}

}  // namespace

void keepCause(CURL* easy, CURLcode code, std::string_view words, const CurlRun& run, HttpExchange& exchange)
{
    const HttpFault fault = faultOf(easy, code, words, run);
    const std::string said = wordsFor(easy, code, words, run);
    const bool ofProxy = fault == HttpFault::proxy || isProxys(easy, fault, words, run, exchange);
    if (ofProxy) exchange.fail(HttpFault::proxy, std::min(run.phase(), HttpPhase::connect), said, run.lastAddress());
    else exchange.fail(fault, isOfTls(fault) ? HttpPhase::secure : run.phase(), said);
}

}  // namespace kzn::pvutil
