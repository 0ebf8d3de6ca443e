#pragma once

#include "service/commands/Commands.h"
#include "service/http/Form.h"
#include "service/seed/Seed.h"
#include "service/store/Database.h"
#include "tests/service/DemoService.h"

namespace service::test {

// The demo organisation's service without a process and a connection: its answers, and its data file within reach.
class InnerService : public testing::Test {
protected:
    InnerService() { seed::fillDemo(database_); }

    std::string answer(const std::string& body)
    {
        return commands::answerForm(database_, settings_, http::Form::fromUrlEncoded(body));
    }

    std::string credOf(const std::string& name)
    {
        return textAt(answer("cmd=login&username=" + name + "&password=" + name + "-demo-1"), kCred);
    }

    std::string execute(const std::string& cred, const std::string& task, const std::string& xml)
    {
        return answer("cmd=execute&cred=" + cred + "&task=" + task + "&xml=" + encoded(xml));
    }

    std::string makeSpace(const std::string& cred)
    {
        return textAt(execute(cred, "AddTabs", "<workspace><workspaceName>n</workspaceName></workspace>"),
                      "/kznapi/return/workspace/workspaceID");
    }

    TemporaryFolder folder_;
    store::Database database_{folder_.file("data")};
    Settings settings_;
};

}  // namespace service::test
