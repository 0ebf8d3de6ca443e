#include "service/base/Refusal.h"
#include "service/base/Secret.h"
#include "service/base/Text.h"
#include "service/commands/Handlers.h"
#include "service/rules/Roles.h"
#include "service/store/Database.h"
#include "service/store/Users.h"

namespace service::commands {

namespace {

// How long the owner of an expired session is told so.
constexpr long long kKeepExpired = 24LL * 60 * 60 * 1000;

struct Claim {
    std::optional<std::string> userID;  // none where nobody has that name
    std::string secret;
    std::string hash;  // that the secret has to match
    bool byToken = false;
};

Claim claimOf(const Context& context, const http::Form& form)
{
    Claim claim;
    claim.byToken = form.has("token");
    if (claim.byToken == form.has("password")) {
        throw Refusal(exceptionid::kBadRequest, "a login needs either a password or a token");
    }
    claim.userID = store::userIDByName(context.database, form.required("username"));
    const store::Secrets secrets = store::secretsOf(context.database, claim.userID.value_or(std::string()));
    claim.secret = form.text(claim.byToken ? "token" : "password");
    claim.hash = claim.byToken ? secrets.tokenHash : secrets.passwordHash;
    return claim;
}

// One reason for an unknown name and a wrong password: nobody learns which names exist.
Proof proven(const Claim& claim)
{
    if (!secretMatches(claim.secret, claim.hash) || !claim.userID) {
        throw Refusal(exceptionid::kLoginRefused,
                      claim.byToken ? "user name or token is wrong" : "user name or password is wrong");
    }
    return {*claim.userID, claim.hash};
}

// Without an identity provider the user's own organisation vouches.
void checkProvider(Context& context, const std::string& userID, const std::string& isp)
{
    bool known = isp.empty();
    for (const store::Provider& provider : store::providersOf(context.database, userID)) {
        known = known || isp == provider.providerID || isp == provider.providerName;
    }
    if (!known) throw Refusal(exceptionid::kLoginRefused, "you have no account at the provider " + inQuotes(isp));
}

std::string openSession(Context& context, store::Session session)
{
    session.cred = newCredential();
    session.duration = context.settings.sessionDuration;
    session.expires = context.now + session.duration;
    store::insertSession(context.database, session);
    return session.cred;
}

void checkAutocommit(const http::Form& form)
{
    if (form.has("autocommit") && form.text("autocommit") != "true") {
        throw Refusal(exceptionid::kBadRequest, "every request is a transaction of its own: autocommit must be true");
    }
}

}  // namespace

Proof prove(const Context& context, const http::Form& form)
{
    checkAutocommit(form);
    return proven(claimOf(context, form));
}

// What was proven before holds as long as the user's secret is the same.
void login(Context& context, const http::Form& form, Reply& reply)
{
    checkAutocommit(form);
    const Claim claim = claimOf(context, form);
    const Proof* const before = context.proof;
    const bool holds = before != nullptr && before->userID == claim.userID && before->hash == claim.hash;
    const std::string userID = holds ? before->userID : proven(claim).userID;
    checkProvider(context, userID, form.text("isp"));
    store::deleteSessionsExpiredBefore(context.database, context.now - kKeepExpired);
    store::Session session;
    session.userID = userID;
    reply.cred = openSession(context, session);
}

void logout(Context& context, const http::Form& /*form*/, Reply& /*reply*/)
{
    store::deleteSession(context.database, context.session.cred);
}

// A clone for a workspace changes that one alone, and ends with the session that it came from; any other is as good as
// a sign-in of its own.
void cloneSession(Context& context, const http::Form& form, Reply& reply)
{
    checkAutocommit(form);
    const store::Session& caller = context.session;
    store::Session session;
    session.userID = caller.userID;
    session.workspaceID = form.text("workspace");
    if (session.workspaceID.empty()) session.workspaceID = caller.workspaceID;
    if (!session.workspaceID.empty()) {
        rules::requireMember(context, session.workspaceID);
        session.root = caller.root.empty() ? caller.cred : caller.root;
    }
    reply.cred = openSession(context, session);
}

}  // namespace service::commands
