// The stand-in service: what a call takes of its processor, against its own server answering a constant; a listing of
// many workspaces, what others notice of it, and what stays of it.
#include <algorithm>
#include <atomic>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "bench/PlainSocket.h"
#include "bench/Reach.h"
#include "bench/Report.h"
#include "bench/ServedProcess.h"
#include "bench/Timing.h"

using namespace kzn::bench;

namespace {

constexpr int kWarmUp = 200;
constexpr int kListings = 12;
constexpr std::string_view kPath = "/kznconnect/op.do";
constexpr std::string_view kSuccess = "<result>SUCCESS</result>";

// What GetWkspList sends.
constexpr std::string_view kListScript =
    "<script>"
    "<step><cmd>list</cmd><type>workspace</type>"
    "<where><eq><path>members/member/userID</path><senv>userID</senv></eq></where>"
    "<select>workspaceID:workspaceName:userID:userName:type:isTemplate:namespaceID:"
    "ext/KZN/description/text:ext/KZN/spaceIcon/url</select>"
    "<page>1</page><pageSize>10000</pageSize></step>"
    "<step><cmd>get</cmd><type>invt</type><select>*</select>"
    "<where><or><eq><path>userDescriptor</path><senv>userID</senv></eq>"
    "<eq><path>userDescriptor</path><senv>userName</senv></eq></or></where></step>"
    "<step><cmd>get</cmd><type>user</type><id>current</id>"
    "<select>workspaces/workspace/roles/role/roleID:workspaces/workspace/roles/role/roleName:"
    "workspaces/workspace/workspaceID</select></step>"
    "</script>";

std::string between(std::string_view text, std::string_view begin, std::string_view end)
{
    const std::size_t at = text.find(begin);
    if (at == std::string_view::npos) return {};
    text.remove_prefix(at + begin.size());
    return std::string(text.substr(0, text.find(end)));
}

// Somebody who is signed in, on a connection of their own.
class Client {
public:
    explicit Client(const ServedProcess& server, const std::string& name = "ben")
        : socket_(server.address() + std::string(kPath)),
          cred_(between(socket_.post("cmd=login&username=" + name + "&password=" + name + "-demo-1"), "<cred>", "<"))
    {
    }

    std::string_view call(const std::string& form) { return socket_.post(form); }
    const std::string& cred() const noexcept { return cred_; }

    std::string execute(const std::string& task, std::string_view xml) const
    {
        return "cmd=execute&task=" + task + "&cred=" + cred_ + "&xml=" + std::string(xml);
    }

    std::string small() const { return "cmd=get&type=sessionInfo&id=sessioninfo&cred=" + cred_; }
    std::string list() const { return execute("RunScript", kListScript); }

private:
    PlainSocket socket_;
    std::string cred_;
};

// A server's processor time for a number of calls of one kind.
double timeOf(Report& report, const ServedProcess& server, Client& client, const std::string& form, int calls)
{
    const double before = server.processorTime();
    bool well = true;
    for (int i = 0; i < calls; ++i) well = client.call(form).find(kSuccess) != std::string_view::npos && well;
    const double after = server.processorTime();
    report.require(well, "a call has failed");
    return after - before;
}

void compareCalls(Report& report, const ServedProcess& service, const ServedProcess& constant)
{
    Client client(service);
    Client peer(constant);
    const std::string space = between(client.call(client.execute("CreateWorkspaceUsingApp",
                                                                 "<workspace><workspaceName>Third</workspaceName>"
                                                                 "<chatRoomName>Room</chatRoomName></workspace>")),
                                      "<workspaceID>", "<");
    const std::string tab =
        between(client.call(client.execute("AddTabs", "<workspace><workspaceID>" + space +
                                                          "</workspaceID><tabs><tab><tabName>One</tabName></tab>"
                                                          "</tabs></workspace>")),
                "<tabID>", "<");
    const auto row = [&](std::string_view name, const std::string& form, double limit) {
        const int batch = report.quick() ? 2 : kServedBatch;
        timeOf(report, service, client, form, report.quick() ? 2 : kWarmUp);
        timeOf(report, constant, peer, form, report.quick() ? 2 : kWarmUp);
        report.atLeast(std::string("a constant / ").append(name),
                       compareUndisturbed(
                           report.pairs(kServedPairs), [&] { return timeOf(report, constant, peer, form, batch); },
                           [&] { return timeOf(report, service, client, form, batch); }),
                       limit);
    };
    row("getSessionInfo", client.small(), kServedLimits.getSessionInfo);
    row("getTabs", "cmd=get&type=workspace&select=tabs&id=" + space + "&cred=" + client.cred(), kServedLimits.getTabs);
    row("editTab",
        "cmd=set&type=tab&id=" + tab + "&cred=" + client.cred() +
            "&xml=<tab><tabName><![CDATA[Another]]></tabName></tab>",
        kServedLimits.editTab);
    row("GetWkspList of three workspaces", client.list(), kServedLimits.getWkspList);
}

std::vector<std::string> startedWith(const std::string& seed)
{
    return {"--data", ":memory:", "--listen", "127.0.0.1:0", "--seed", seed};
}

void makeSpaces(Report& report, Client& client, int count)
{
    const std::string form = client.execute(
        "AddTabs",
        "<workspace><workspaceName>Workspace of many</workspaceName><tabs><tab><tabName>Talk</tabName>"
        "<tabType>1</tabType></tab></tabs><ext><KZN><description><text>What it is for</text></description>"
        "</KZN></ext></workspace>");
    bool well = true;
    for (int i = 0; i < count; ++i) well = client.call(form).find(kSuccess) != std::string_view::npos && well;
    report.require(well, "a workspace could not be made");
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// A few calls at once, where one alone takes little more than the steps in which a process's time moves.
double listingTime(Report& report, const ServedProcess& service, Client& client, int calls)
{
    std::vector<double> times;
    for (int i = 0; i < report.pairs(kListings); ++i) {
        times.push_back(timeOf(report, service, client, client.list(), calls) / calls);
    }
    return median(times);
}

double smallCallTime(Report& report, Client& client, int calls)
{
    std::vector<double> times;
    for (int i = 0; i < calls; ++i) {
        times.push_back(secondsOf(wallTime, [&] {
            report.require(client.call(client.small()).find(kSuccess) != std::string_view::npos, "a call has failed");
        }));
    }
    return median(times);
}

// Two others list all that there is, again and again.
void compareBeside(Report& report, const ServedProcess& service)
{
    Client client(service);
    const int calls = report.quick() ? 5 : 400;
    const double alone = smallCallTime(report, client, calls);
    std::atomic<bool> isOver = false;
    std::vector<std::thread> others;
    for (int i = 0; i < 2; ++i) {
        others.emplace_back([&] {
            Client other(service);
            while (!isOver) other.call(other.list());
        });
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    const double beside = smallCallTime(report, client, calls);
    isOver = true;
    for (std::thread& other : others) other.join();
    const double ratio = beside / alone;
    report.atMost("a small call beside two such listings / alone", {ratio, ratio, ratio}, 5);
}

void measureListing(Report& report, const ServedProcess& service)
{
    Client client(service);
    const int few = report.quick() ? 20 : 1'000;
    makeSpaces(report, client, few);
    constexpr int kTenfold = 10;
    const double time = listingTime(report, service, client, kTenfold);
    makeSpaces(report, client, (kTenfold - 1) * few);
    const double tenfold = listingTime(report, service, client, 1);
    report.note("listing 1,000 workspaces, processor time", time * 1e3, "ms");
    report.note("listing 10,000 workspaces, processor time", tenfold * 1e3, "ms");
    const double ratio = tenfold / (kTenfold * time);
    report.atMost("listing 10,000 workspaces / ten times 1,000", {ratio, ratio, ratio}, 1.7);
}

// An answer of almost as much as there may be.
void measureMemory(Report& report, const ServedProcess& service)
{
    Client client(service);
    const double before = service.memory();
    std::string steps;
    for (int i = 0; i < 4; ++i) steps += "<step><cmd>list</cmd><type>workspace</type></step>";
    const std::size_t size = client.call(client.execute("RunScript", "<script>" + steps + "</script>")).size();
    std::this_thread::sleep_for(std::chrono::seconds(1));
    report.note("a large answer", static_cast<double>(size) / (1024.0 * 1024.0), "MiB");
    report.note("memory before it", before, "MiB");
    report.note("memory a second after it", service.memory(), "MiB");
}

}  // namespace

int main(int argc, char** argv)
{
    Report report(argc, argv);
    {
        const ServedProcess service(BENCH_SERVICE, startedWith("demo"));
        measureListing(report, service);
        compareBeside(report, service);
        measureMemory(report, service);
    }
    report.require(stayOnOneProcessor(), "the program cannot stay on one processor");
    const ServedProcess service(BENCH_SERVICE, startedWith("demo"));
    const ServedProcess constant(BENCH_CONSTANT, {});
    compareCalls(report, service, constant);
    return report.status();
}
