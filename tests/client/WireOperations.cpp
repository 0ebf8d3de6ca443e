#include "tests/client/WireOperations.h"

const WireOperations& wireOperations()
{
    static const WireOperations kAll = [] {
        WireOperations all;
        for (auto topic : {&pipelineOperations, &sessionOperations, &spaceOperations, &spaceAppOperations,
                           &tabOperations, &accessOperations, &probeOperations, &memberOperations, &favouriteOperations,
                           &userOperations, &organisationOperations, &libraryOperations, &eventOperations}) {
            for (WireOperation& operation : topic()) all.push_back(std::move(operation));
        }
        return all;
    }();
    return kAll;
}
