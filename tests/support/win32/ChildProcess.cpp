#include "tests/support/ChildProcess.h"

#include <windows.h>

#include <utility>

#include "tests/support/win32/CommandLine.h"

namespace {

constexpr UINT kKilled = 0xDEAD;

std::wstring wide(const std::string& utf8)
{
    return std::filesystem::path(std::u8string(utf8.begin(), utf8.end())).wstring();
}

HANDLE newFile(const std::filesystem::path& path)
{
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    return CreateFileW(path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_DELETE, &inherited, CREATE_ALWAYS,
                       FILE_ATTRIBUTE_NORMAL, nullptr);
}

PROCESS_INFORMATION start(const std::string& program, const std::vector<std::string>& words, STARTUPINFOW& startup)
{
    std::wstring line = quotedWord(wide(program));
    for (const std::string& word : words) line += L' ' + quotedWord(wide(word));
    startup.cb = sizeof startup;
    const BOOL inherits = (startup.dwFlags & STARTF_USESTDHANDLES) != 0 ? TRUE : FALSE;
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, inherits, 0, nullptr, nullptr, &startup, &process))
        return {};
    CloseHandle(process.hThread);
    return process;
}

}  // namespace

ChildProcess::ChildProcess(const std::string& program, const std::vector<std::string>& words)
{
    STARTUPINFOW startup{};
    const PROCESS_INFORMATION process = start(program, words, startup);
    id_ = process.dwProcessId;
    handle_ = reinterpret_cast<std::intptr_t>(process.hProcess);
}

ChildProcess::ChildProcess(const std::string& program, const std::vector<std::string>& words, const Output& output)
{
    STARTUPINFOW startup{};
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = newFile(output.out);
    startup.hStdError = newFile(output.err);
    const PROCESS_INFORMATION process = start(program, words, startup);
    id_ = process.dwProcessId;
    handle_ = reinterpret_cast<std::intptr_t>(process.hProcess);
    CloseHandle(startup.hStdOutput);
    CloseHandle(startup.hStdError);
}

bool ChildProcess::isRunning() const
{
    return handle_ != 0 && WaitForSingleObject(reinterpret_cast<HANDLE>(handle_), 0) == WAIT_TIMEOUT;
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
