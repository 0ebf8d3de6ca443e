#include "host/Json.h"

void to_json(host::Json& json, const SpaceForList& space)
{
    json = {
        {"workspaceID", space.workspaceID},
        {"workspaceName", space.workspaceName},
        {"status", space.status},
        {"userID", space.userID},
        {"userName", space.userName},
        {"type", space.type},
        {"isTemplate", space.isTemplate},
        {"namespaceID", space.namespaceID},
        {"description", space.description},
        {"spaceIconURL", space.spaceIconURL},
        {"role", space.role},
    };
}
