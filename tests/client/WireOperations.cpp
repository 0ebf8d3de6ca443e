#include "tests/client/WireOperations.h"

const WireOperations& wireOperations()
{
    static const WireOperations kAll = [] {
        WireOperations all;
        for (auto topic : {&pipelineOperations, &sessionOperations, &spaceOperations, &accessOperations}) {
            for (WireOperation& operation : topic()) all.push_back(std::move(operation));
        }
        return all;
    }();
    return kAll;
}
