#include "bench/LoopbackServer.h"

#include <winsock2.h>

#include <windows.h>

#include <array>
#include <cstring>
#include <memory>
#include <stdexcept>

#include "bench/ReplyServer.h"
#include "bench/win32/ServedReply.h"

namespace kzn::bench {

namespace {

struct Close {
    void operator()(void* handle) const noexcept { CloseHandle(handle); }
};
using Handle = std::unique_ptr<void, Close>;

struct Unmap {
    void operator()(ServedReply* served) const noexcept { UnmapViewOfFile(served); }
};

Handle sharedMemory(std::size_t size)
{
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    return Handle(
        CreateFileMappingW(INVALID_HANDLE_VALUE, &inherited, PAGE_READWRITE, 0, static_cast<DWORD>(size), nullptr));
}

// Its process ends with the last handle of this, whatever becomes of the program that holds it.
Handle jobOfItsOwn()
{
    Handle job(CreateJobObjectW(nullptr, nullptr));
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    SetInformationJobObject(job.get(), JobObjectExtendedLimitInformation, &limits, sizeof limits);
    return job;
}

// bench_server.exe beside the program.
std::wstring commandLine(HANDLE memory)
{
    std::array<wchar_t, MAX_PATH> self{};
    const DWORD size = GetModuleFileNameW(nullptr, self.data(), static_cast<DWORD>(self.size()));
    const std::wstring path(self.data(), size);
    return L'"' + path.substr(0, path.find_last_of(L'\\') + 1) + L"bench_server.exe\" " +
           std::to_wstring(reinterpret_cast<std::uintptr_t>(memory));
}

}  // namespace

struct LoopbackServer::Running {
    Handle memory;
    std::unique_ptr<ServedReply, Unmap> served;
    Handle job = jobOfItsOwn();
    Handle process;

    explicit Running(std::string_view reply)
        : memory(sharedMemory(sizeof(ServedReply) + reply.size())),
          served(static_cast<ServedReply*>(MapViewOfFile(memory.get(), FILE_MAP_ALL_ACCESS, 0, 0, 0)))
    {
        if (!served) throw std::runtime_error("no memory to share with the server");
        std::construct_at(served.get(), 0U, 0U, reply.size());
        std::memcpy(served->bytes(), reply.data(), reply.size());
        start();
    }

    void start()
    {
        STARTUPINFOW startup{};
        startup.cb = sizeof startup;
        PROCESS_INFORMATION made{};
        std::wstring command = commandLine(memory.get());
        if (CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, CREATE_SUSPENDED, nullptr, nullptr,
                           &startup, &made) == FALSE)
            throw std::runtime_error("the server's process cannot be made");
        process.reset(made.hProcess);
        const Handle thread(made.hThread);
        AssignProcessToJobObject(job.get(), process.get());
        ResumeThread(thread.get());
        constexpr DWORD kPause = 2;  // ms
        while (served->port == 0)
            if (WaitForSingleObject(process.get(), kPause) == WAIT_OBJECT_0)
                throw std::runtime_error("the server's process has ended");
    }
};

LoopbackServer::LoopbackServer(std::string_view xmlReply) : running_(std::make_unique<Running>(xmlReply))
{
    url_ = ReplyServer::urlOf(static_cast<std::uint16_t>(running_->served->port.load()));
}

LoopbackServer::~LoopbackServer() = default;

std::size_t LoopbackServer::connections() const noexcept
{
    return running_->served->connections;
}

}  // namespace kzn::bench
