// Everything that a peer can make grow, and how far it may.
//
// A reply is read in the memory of the host, on a 32-bit target too, by whoever answers at the address: the service, a
// proxy, something else that listens there. Each limit is far above what the service sends and far below what hurts.
// One that is passed on the wire ends the exchange as HttpFault::tooLarge; one that is passed inside the XML ends the
// parse by EXPAT_EX::XmlLimitPassed. The call fails either way.
#pragma once

#include <cstddef>

namespace kzn::pvutil::limits {

// ---- The wire -------------------------------------------------------------------------------------------------------

/// The body of a reply. It is held once as bytes and once as text of twice the size. The longest listing that is known
/// takes a few mebibytes; a picture may have this size.
constexpr std::size_t kReplyBytes = std::size_t{64} << 20;

/// All heads of one exchange together: interim replies, a proxy's, the reply's own, and the trailers behind its chunks.
/// The service's own take a few hundred bytes, a proxy's cookies some thousand.
constexpr std::size_t kHeadBytes = std::size_t{256} << 10;

/// One line of them. Common servers send no longer ones than 8 or 16 KiB.
constexpr std::size_t kHeadLineBytes = std::size_t{64} << 10;

/// How many lines they have. Each is worth some hundred bytes of bookkeeping, however short it is.
constexpr std::size_t kHeadLines = 1'000;

/// Interim replies before the reply. One is usual; a server that goes on with them would hold a call for ever, for each
/// is a sign of life.
constexpr std::size_t kInterimReplies = 16;

/// What comes over the wire beside heads and body: the sizes of chunks, what stands behind these, and what TLS adds.
/// A body of the full size in chunks of 32 bytes needs no more.
constexpr std::size_t kFramingBytes = std::size_t{16} << 20;

/// Redirects that a get follows.
constexpr int kRedirects = 5;

// ---- The XML of a reply ---------------------------------------------------------------------------------------------

/// Elements inside one another. The service's own replies are less than ten deep; each costs memory while it is open.
constexpr std::size_t kXmlDepth = 1'000;

/// The text of one element that the library reads, in UTF-16 units. The longest is a description; this is
/// for one of megabytes.
constexpr std::size_t kXmlTextUnits = std::size_t{4} << 20;

/// Elements of one kind that become records, all lists of the reply together: the roles of everybody in it are one. A
/// record takes some hundred bytes, whatever little XML it is made of: a reply of the full size could hold ten million.
constexpr std::size_t kXmlItems = 1'000'000;

}  // namespace kzn::pvutil::limits
