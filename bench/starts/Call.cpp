// One call by the library, the first of its process: bench_first_call <operation URL>
#include "client/WapiClient.h"
#include "pvutil/StringEx.h"

int main(int argc, char** argv)
{
    using kzn::pvutil::stringex::FromUtf8;
    if (argc < 2) return 2;
    CWapiClient client(FromUtf8(argv[1]));
    return client.getSessionInfo(FromUtf8("cred")) == 1 ? 0 : 1;
}
