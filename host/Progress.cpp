#include "host/Progress.h"

#include <algorithm>
#include <cstdio>

#include "host/System.h"
#include "host/Terminal.h"

namespace host {

namespace {

constexpr std::size_t kMostCells = 40;
constexpr std::size_t kLeastCells = 4;
constexpr std::size_t kBesideCells = 24;  // the brackets and the numbers
constexpr std::size_t kKilobyte = 1024;

std::string kilobytes(std::size_t bytes)
{
    return std::to_string((bytes + kKilobyte - 1) / kKilobyte) + " KB";
}

}  // namespace

std::string progressBar(std::size_t done, std::size_t whole, std::size_t width)
{
    if (whole == 0) return kilobytes(done);
    const std::size_t room = width == 0 ? kMostCells : width - std::min(width, kBesideCells);
    const std::size_t cells = std::clamp(room, kLeastCells, kMostCells);
    const double share = static_cast<double>(std::min(done, whole)) / static_cast<double>(whole);
    const auto full = static_cast<std::size_t>(share * static_cast<double>(cells));
    const std::string percent = std::to_string(static_cast<int>(share * 100));
    return "[" + std::string(full, '#') + std::string(cells - full, '.') + "] " +
           std::string(3 - std::min<std::size_t>(percent.size(), 3), ' ') + percent + " % of " + kilobytes(whole);
}

Progress::Progress(CWapiClient& client, const Wire& wire) : client_(client)
{
    if (wire.tells() || !system::errorIsTerminal()) return;
    width_ = system::terminalWidth();
    client_.onTransferProgress([this](std::size_t done, std::size_t whole) {
        show(progressBar(done, whole, width_));
        return true;
    });
}

Progress::~Progress()
{
    client_.onTransferProgress({});
    if (!shown_.empty()) show({});
}

/// Blanks, not a terminal's own command: the oldest consoles know no other way.
void Progress::show(const std::string& bar)
{
    if (bar == shown_) return;
    const std::size_t leftover = shown_.size() - std::min(shown_.size(), bar.size());
    const std::string line = "\r" + bar + std::string(leftover, ' ') + (bar.empty() ? "\r" : "");
    std::fputs(line.c_str(), stderr);
    std::fflush(stderr);
    shown_ = bar;
}

}  // namespace host
