#include "service/rules/Libraries.h"

#include "service/base/Refusal.h"
#include "service/base/Text.h"

namespace service::rules {

store::Library requireWritable(const Context& context, const std::string& libraryID)
{
    std::optional<store::Library> library = store::findLibrary(context.database, libraryID);
    const bool readable = library && (mayWrite(context, *library) || (library->type == store::kOrganisationLibrary &&
                                                                      library->orgID == context.session.orgID));
    if (!readable)
        throw Refusal(exceptionid::kNoSuchObject, "there is no library " + inQuotes(libraryID) + " of yours");
    if (!mayWrite(context, *library)) {
        throw Refusal(exceptionid::kAccessDenied, "only its owner may change the library " + inQuotes(library->name));
    }
    return std::move(*library);
}

}  // namespace service::rules
