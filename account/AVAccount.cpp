// The user's audio/video account. What it holds is read with the user's configuration.
#include "client/Operation.h"

using namespace wapi;

int CWapiClient::createRDQAVAccount(const CStringT& cred, const CStringT& user)
{
    return operation("CWapiClient::createRDQAVAccount", Timer::rearm, [&] {
        // The task's name is plural, one user is sent.
        FormBody body;
        body.encoded("cmd=", "execute").encoded("&cred=", cred).encoded("&task=", "CreateRDQAVAccounts");
        body.encoded("&xml=", "<user><userID>", user, "</userID></user>");

        CXMLWapiSetResponse reply;
        return post(body, reply);
    });
}
