// From the bytes of a log to its entries.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace logreader {

enum class Level { error, warning, info, debug };

/// What one head of the log introduces.
struct Entry {
    std::string time;  ///< "2026-01-31 23:59:58"
    std::string pid;   ///< in decimal digits, as the log has it
    std::string tid;
    Level level = Level::debug;
    std::string text;         ///< without the end of its line; of a longer one the first kLongestText bytes
    std::uint64_t bytes = 0;  ///< of the whole text
    bool isWhole = false;     ///< the end of the line is there
};

/// More than the library ever takes from the service in one reply; what is behind it is counted and not kept.
constexpr std::size_t kLongestText = std::size_t{80} << 20;

/// Takes the log in pieces of any size and hands on each entry as soon as it is over. One text is held at a time.
///
/// A head is a line that begins "<YYYY-MM-DD hh:mm:ss, pid=P, tid=T> Level:  ". A line of a text may look the same: the
/// log has nothing to tell the two apart, and such a line begins an entry here.
class EntryReader {
public:
    using Sink = std::function<void(Entry&&)>;

    explicit EntryReader(Sink sink) : sink_(std::move(sink)) {}

    void feed(std::string_view bytes);

    /// Nothing more has come for a while: an entry whose line has ended is over. What comes behind it without a head
    /// is nobody's.
    void pause();

    /// Nothing more will come, or what comes is another file's.
    void end();

private:
    void take(std::string_view bytes);
    bool takeHead(std::string_view& bytes);
    void takeLine(std::string_view& bytes);
    void append(std::string_view bytes);
    void finish(bool nextHeadSeen);

    Sink sink_;
    Entry entry_;
    std::string carry_;       // the beginning of a line that may yet become a head
    std::string tail_;        // the last bytes of the text, which may not have been kept
    bool isInEntry_ = false;  // before the first head there is none
    bool isAtLineStart_ = true;
};

}  // namespace logreader
