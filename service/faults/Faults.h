#pragma once

#include <optional>
#include <vector>

#include "service/faults/Fault.h"
#include "service/http/Message.h"
#include "service/store/FaultRows.h"

namespace service::faults {

// The faults that are set, as the data file holds them.
class Faults {
public:
    explicit Faults(store::Database& database);

    // What was changed in the data file counts from now on.
    void reload();

    // The first fault that strikes this call, which is counted with all that it was meant for. Never throws: where the
    // data file cannot be written, nothing strikes.
    std::optional<Fault> strike(const http::Operation& operation);

private:
    struct Entry {
        store::FaultRow row;
        Fault fault;
    };

    std::optional<Fault> counted(const http::Operation& operation);

    store::Database& database_;
    std::vector<Entry> entries_;
};

}  // namespace service::faults
