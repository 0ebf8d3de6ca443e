#include <windows.h>

#include <stdexcept>

#include "tests/service/ServiceProcess.h"

namespace service::test {

void ServiceProcess::signal(int /*number*/) const
{
    const std::wstring name = L"Local\\pvwapi-service-" + std::to_wstring(child_.id());
    const HANDLE event = OpenEventW(EVENT_MODIFY_STATE, FALSE, name.c_str());
    if (event == nullptr) throw std::runtime_error("the service cannot be asked to end");
    SetEvent(event);
    CloseHandle(event);
}

}  // namespace service::test
