#pragma once

#include <atomic>
#include <optional>
#include <vector>

#include "service/faults/Fault.h"
#include "service/http/Message.h"
#include "service/store/FaultRows.h"

namespace service::faults {

// The faults that are set, as the data file holds them. All but the first question is for who may write there.
class Faults {
public:
    explicit Faults(store::Database& database);

    // Whether there are any; any thread may ask.
    bool areSet() const { return areSet_; }

    // What was changed in the data file counts from now on.
    void reload(store::Database& database);

    // The first fault that strikes this call, which is counted with all that it was meant for. Where the data file
    // cannot be written, nothing strikes.
    std::optional<Fault> strike(store::Database& database, const http::Operation& operation);

private:
    struct Entry {
        store::FaultRow row;
        Fault fault;
    };

    std::optional<Fault> counted(store::Database& database, const http::Operation& operation);

    std::vector<Entry> entries_;
    std::atomic<bool> areSet_ = false;
};

}  // namespace service::faults
