#include "tests/support/ChildProcess.h"

#include <windows.h>

#include <utility>

namespace {

constexpr UINT kKilled = 0xDEAD;

}  // namespace

ChildProcess::ChildProcess(const std::string& program, const std::vector<std::string>& words)
{
    std::string line = "\"" + program + "\"";
    for (const std::string& word : words) line += " \"" + word + "\"";
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    if (!CreateProcessA(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process)) return;
    CloseHandle(process.hThread);
    id_ = process.dwProcessId;
    handle_ = reinterpret_cast<std::intptr_t>(process.hProcess);
}

int ChildProcess::wait()
{
    if (handle_ == 0) return -1;
    const auto process = reinterpret_cast<HANDLE>(std::exchange(handle_, 0));
    WaitForSingleObject(process, INFINITE);
    DWORD status = kKilled;
    GetExitCodeProcess(process, &status);
    CloseHandle(process);
    return status == kKilled ? -1 : static_cast<int>(status);
}

void ChildProcess::kill()
{
    if (handle_ == 0) return;
    TerminateProcess(reinterpret_cast<HANDLE>(handle_), kKilled);
    wait();
}
