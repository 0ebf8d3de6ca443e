// A process with its own view of the system's proxy, which is read once a process on Windows.
//   proxied_call ADDRESS    posts there, says what became of it, and exits with its cause; 100 for a reply
#include <iostream>

#include "pvutil/HttpClient.h"
#include "tests/support/Text.h"

int main(int argc, char** argv)
{
    using namespace kzn::pvutil;
    if (argc != 2) return 101;
    HttpLimits limits;
    limits.connect = std::chrono::milliseconds(2000);
    limits.silence = std::chrono::milliseconds(2000);
    CZelHttpClient::SetLimits(limits);
    CZelHttpClient client;
    const int status = client.Request(wide(argv[1]), HTTP_METHOD::POST, wide("a=b"), {}, HttpOption::kForm);
    std::cout << "fault | " << static_cast<int>(client.Failure().fault) << " | " << textOf(client.Failure()) << "\n"
              << std::flush;
    return status == -1 ? static_cast<int>(client.Failure().fault) : 100;
}
