#include "log/Reader.h"

#include <chrono>
#include <cstdio>
#include <memory>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "log/Calls.h"
#include "log/Operations.h"
#include "log/Problem.h"
#include "log/Report.h"
#include "log/System.h"
#include "log/Text.h"

namespace logreader {

namespace {

constexpr std::size_t kPiece = std::size_t{256} << 10;
constexpr std::chrono::milliseconds kPause{100};

/// Standard output, in large pieces.
class Output {
public:
    void write(std::string_view text)
    {
        waiting_.append(text);
        if (waiting_.size() >= kPiece) flush();
    }

    void flush()
    {
        const bool isWritten = std::fwrite(waiting_.data(), 1, waiting_.size(), stdout) == waiting_.size();
        if (!isWritten || std::fflush(stdout) != 0) throw Problem("the output cannot be written");
        waiting_.clear();
    }

private:
    std::string waiting_;
};

class Printer {
public:
    explicit Printer(const Options& options)
        : options_(options),
          secrets_(options.showSecrets ? Secrets::shown : Secrets::masked),
          columns_(system::outputColumns())
    {
    }

    void take(const Call& call)
    {
        ++seen_;
        // That there are several processes shows with the second one; up to there it needs no telling.
        if (firstPid_.empty()) firstPid_ = call.pid;
        else if (call.pid != firstPid_) process_ = Process::shown;
        if (isDone() || !isWanted(call)) return;
        ++shown_;
        print(call);
    }

    /// What was asked for has been printed.
    bool isDone() const { return options_.call != 0 && shown_ > 0; }

    void flush() { output_.flush(); }

    /// What standard error says at the end, empty where the output speaks for itself.
    std::string lastWord() const
    {
        if (shown_ > 0) return {};
        if (options_.call != 0) {
            throw Problem("there is no call " + std::to_string(options_.call) + ": the log has " +
                          std::to_string(seen_));
        }
        return seen_ == 0 ? "the log holds no calls" : "none of " + std::to_string(seen_) + " calls is one of those";
    }

private:
    bool isWanted(const Call& call) const
    {
        if (options_.call != 0) return call.number == options_.call;
        const std::string_view time = call.time;
        return (!options_.failed || call.outcome.kind != Outcome::Kind::success) &&
               (options_.operation.empty() || matchesOperation(call.operation, options_.operation)) &&
               time.substr(0, options_.since.size()) >= options_.since &&
               time.substr(0, options_.until.size()) <= options_.until;
    }

    void print(const Call& call)
    {
        if (options_.json) return output_.write(jsonOf(call, secrets_) + "\n");
        std::string line = lineOf(call, secrets_, process_);
        output_.write((columns_ > 0 ? fitted(std::move(line), columns_) : line) + "\n");
        if (options_.expand || options_.call != 0) {
            writeDetails(call, secrets_, [this](std::string_view text) { output_.write(text); });
        }
    }

    const Options& options_;
    Secrets secrets_;
    std::size_t columns_;
    Process process_ = Process::leftOut;
    std::string firstPid_;
    std::uint64_t seen_ = 0;
    std::uint64_t shown_ = 0;
    Output output_;
};

using InputPointer = std::unique_ptr<system::Input>;

/// Nothing where there is no such file, which for a moment can be so between two files.
InputPointer opened(const std::string& path)
try {
    return std::make_unique<system::Input>(path);
} catch (const Problem&) {
    return nullptr;
}

/// The name under which the library keeps the log before this one, empty for a log that it has not named.
std::string earlierName(const std::string& path)
{
    constexpr std::string_view kEnding = ".txt";
    return path.ends_with(kEnding) ? path.substr(0, path.size() - kEnding.size()) + ".1.txt" : std::string();
}

/// Whether a file was begun behind the one and ended before the other.
bool isBetween(const system::Mark& file, const system::Mark& one, const system::Mark& other)
{
    return !file.isSameFile(one) && !file.isSameFile(other) && file.written >= one.written &&
           file.written <= other.written;
}

class Reading {
public:
    Reading(const Options& options, const std::string& file)
        : options_(options),
          printer_(options),
          calls_([this](const Call& call) { printer_.take(call); }),
          file_(file),
          input_(std::make_unique<system::Input>(file)),
          piece_(kPiece)
    {
    }

    void run()
    {
        readToEnd();
        while (options_.follow && input_->isFile() && !printer_.isDone()) {
            printer_.flush();
            std::this_thread::sleep_for(kPause);
            if (readToEnd() == 0) look();
        }
        if (!printer_.isDone()) calls_.end();
        printer_.flush();
    }

    std::string lastWord() const { return printer_.lastWord(); }

private:
    /// Returns how much there was.
    std::size_t readToEnd()
    {
        std::size_t total = 0;
        while (!printer_.isDone()) {
            const std::size_t got = input_->read(piece_);
            if (got == 0) break;
            calls_.feed({piece_.data(), got});
            total += got;
        }
        return total;
    }

    /// The file is at rest.
    void look()
    {
        calls_.pause();
        const system::Change change = input_->change();
        if (change == system::Change::none) return;
        if (change == system::Change::replaced) readToEnd();  // what came to the old one meanwhile
        InputPointer next = opened(file_);
        if (!next) return;  // it is gone again: the next look finds the one behind it
        InputPointer missed = change == system::Change::replaced ? missedBefore(*next) : nullptr;
        if (missed) {
            goOn(std::move(missed));
            readToEnd();
        }
        goOn(std::move(next));
    }

    /// The log that was begun and renamed between the present one and `next`, nothing where there was none.
    InputPointer missedBefore(const system::Input& next) const
    {
        InputPointer earlier = opened(earlierName(file_));
        const bool isMissed = earlier && isBetween(earlier->mark(), input_->mark(), next.mark());
        return isMissed ? std::move(earlier) : nullptr;
    }

    void goOn(InputPointer next)
    {
        input_ = std::move(next);
        calls_.endFile();
    }

    const Options& options_;
    Printer printer_;
    CallReader calls_;
    std::string file_;
    InputPointer input_;
    std::vector<char> piece_;
};

}  // namespace

void readLog(const Options& options)
{
    const std::string file = options.file.empty() ? system::libraryLog() : options.file;
    Reading reading(options, file);
    reading.run();
    const std::string word = reading.lastWord();
    if (!word.empty()) std::fputs(("pvwapi-log: " + harmless(file) + ": " + word + "\n").c_str(), stderr);
}

}  // namespace logreader
