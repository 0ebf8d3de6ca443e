// A bar on the terminal that shows how far a picture has come.
#pragma once

#include <cstddef>
#include <string>

#include "client/WapiClient.h"
#include "host/Wire.h"

namespace host {

/// What the bar shows of a transfer; `whole` is 0 while nobody knows. It fits a terminal of `width` columns, or is as
/// wide as it likes where that is 0.
std::string progressBar(std::size_t done, std::size_t whole, std::size_t width);

/// Shows the client's transfers on standard error while it lives, if that is a terminal, and takes the bar away after.
/// No bar where the exchanges are told there: they would stand on its line.
class Progress {
public:
    Progress(CWapiClient& client, const Wire& wire);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress();

private:
    void show(const std::string& bar);

    CWapiClient& client_;
    std::size_t width_ = 0;
    std::string shown_;
};

}  // namespace host
