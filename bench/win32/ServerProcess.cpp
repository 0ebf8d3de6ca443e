// The service's end of a timed call, in a process of its own: bench_server HANDLE, with the handle of the memory that
// it shares with the program that started it.
#include "bench/ReplyServer.h"
#include "bench/win32/ServedReply.h"

#include <windows.h>

#include <cstdint>
#include <cstdlib>

int main(int argc, char** argv)
{
    using kzn::bench::ServedReply;
    if (argc != 2) return EXIT_FAILURE;
    const auto memory = reinterpret_cast<HANDLE>(static_cast<std::uintptr_t>(std::strtoull(argv[1], nullptr, 10)));
    auto* const served = static_cast<ServedReply*>(MapViewOfFile(memory, FILE_MAP_ALL_ACCESS, 0, 0, 0));
    if (served == nullptr) return EXIT_FAILURE;
    kzn::bench::ReplyServer server;
    served->port = server.port();
    server.serve({served->bytes(), served->size}, served->connections);
    return EXIT_FAILURE;
}
