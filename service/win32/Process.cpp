#include "service/base/Process.h"

#include <windows.h>
#include <winsock2.h>

#include <fcntl.h>
#include <io.h>
#include <malloc.h>
#include <shellapi.h>
#include <tlhelp32.h>

#include <boost/asio/windows/object_handle.hpp>
#include <cstdio>
#include <stdexcept>

#include "service/win32/Error.h"

namespace service {

namespace {

std::string toUtf8(const wchar_t* text)
{
    const int size = WideCharToMultiByte(CP_UTF8, WC_ERR_INVALID_CHARS, text, -1, nullptr, 0, nullptr, nullptr);
    if (size == 0) throw std::runtime_error("the command line is not UTF-16");
    std::string utf8(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, WC_ERR_INVALID_CHARS, text, -1, utf8.data(), size, nullptr, nullptr);
    utf8.pop_back();
    return utf8;
}

}  // namespace

std::vector<std::string> arguments(int /*argc*/, const char* const* /*argv*/)
{
    int count = 0;
    const win32::Local<LPWSTR> words(CommandLineToArgvW(GetCommandLineW(), &count));
    if (!words) win32::fail("the command line cannot be read");
    std::vector<std::string> result;
    for (int index = 0; index < count; ++index) result.push_back(toUtf8(words.get()[index]));
    return result;
}

void prepareStreams()
{
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
    SetConsoleOutputCP(CP_UTF8);
}

namespace {

// Whoever shares no console with the service asks by this event, and so does the console's handler.
std::wstring eventName()
{
    return L"Local\\pvwapi-service-" + std::to_wstring(GetCurrentProcessId());
}

HANDLE newEvent()
{
    const HANDLE event = CreateEventW(nullptr, TRUE, FALSE, eventName().c_str());
    if (event == nullptr) win32::fail("the service could not be asked to end");
    return event;
}

bool requestEnd()
{
    const HANDLE event = OpenEventW(EVENT_MODIFY_STATE, FALSE, eventName().c_str());
    if (event == nullptr) return false;
    SetEvent(event);
    CloseHandle(event);
    return true;
}

// Called on a thread of its own. The process ends when it returns from the last three: there it waits until the service
// has ended by itself.
BOOL WINAPI onConsole(DWORD request)
{
    if (!requestEnd()) return FALSE;
    if (request == CTRL_CLOSE_EVENT || request == CTRL_LOGOFF_EVENT || request == CTRL_SHUTDOWN_EVENT) Sleep(INFINITE);
    return TRUE;
}

void CALLBACK onParentsEnd(void*, BOOLEAN)
{
    requestEnd();
}

DWORD parentID()
{
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    if (snapshot == INVALID_HANDLE_VALUE) win32::fail("the process that started it is not known");
    PROCESSENTRY32W entry{};
    entry.dwSize = sizeof entry;
    DWORD parent = 0;
    for (BOOL found = Process32FirstW(snapshot, &entry); found; found = Process32NextW(snapshot, &entry)) {
        if (entry.th32ProcessID == GetCurrentProcessId()) parent = entry.th32ParentProcessID;
    }
    CloseHandle(snapshot);
    return parent;
}

unsigned long long birthOf(HANDLE process)
{
    FILETIME birth{};
    FILETIME other{};
    if (!GetProcessTimes(process, &birth, &other, &other, &other)) win32::fail("the age of a process is not known");
    return (static_cast<unsigned long long>(birth.dwHighDateTime) << 32U) | birth.dwLowDateTime;
}

}  // namespace

long long processID()
{
    return GetCurrentProcessId();
}

// The heap does so by itself.
void prepareMemory() {}

void returnMemory()
{
    _heapmin();
}

// The number of a parent that has ended may be another's by now, who is younger than this process.
void endWithParent()
{
    const HANDLE parent = OpenProcess(SYNCHRONIZE | PROCESS_QUERY_LIMITED_INFORMATION, FALSE, parentID());
    if (parent == nullptr || birthOf(parent) > birthOf(GetCurrentProcess())) {
        throw std::runtime_error("the process that started it has ended");
    }
    HANDLE wait = nullptr;  // it and the handle stay for as long as the process does
    if (!RegisterWaitForSingleObject(&wait, parent, &onParentsEnd, nullptr, INFINITE, WT_EXECUTEONLYONCE)) {
        win32::fail("the system does not tell of the parent's end");
    }
}

struct StopOnRequest::State {
    explicit State(boost::asio::io_context& io) : event(io, newEvent())
    {
        event.async_wait([&io](const boost::system::error_code& error) {
            if (!error) io.stop();
        });
        SetConsoleCtrlHandler(&onConsole, TRUE);
    }
    ~State() { SetConsoleCtrlHandler(&onConsole, FALSE); }
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    boost::asio::windows::object_handle event;
};

StopOnRequest::StopOnRequest(boost::asio::io_context& io) : state_(std::make_unique<State>(io)) {}

StopOnRequest::~StopOnRequest() = default;

}  // namespace service
