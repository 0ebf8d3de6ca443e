#include "service/base/Refusal.h"
#include "service/base/Text.h"
#include "service/commands/Fields.h"
#include "service/commands/Handlers.h"
#include "service/rules/Rights.h"

namespace service::commands {

namespace {

constexpr std::size_t kMaxTests = 50'000;

}  // namespace

// Every test comes back under its own name with what it asked about, the access and, where refused, the reason.
void probeAccess(Context& context, const xml::Node& xml, Reply& reply)
{
    expectElement(xml, "tests");
    if (xml.children.size() > kMaxTests) throw Refusal(exceptionid::kLimitExceeded, "there are too many tests");
    for (const xml::Node& test : xml.children) {
        const rules::Right right = rules::rightOf(context, test);
        xml::Node& answer = reply.payload.add(test.name);
        for (const std::string_view field : {"cmd", "id", "type"}) {
            if (const xml::Node* const asked = test.child(field)) answer.add(field, asked->text);
        }
        answer.add("access", truthText(right.access));
        answer.add("reason", right.reason);
    }
}

}  // namespace service::commands
