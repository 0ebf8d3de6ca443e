#include <csignal>

#include "tests/service/ServiceProcess.h"

namespace service::test {

void ServiceProcess::signal(int number) const
{
    ::kill(static_cast<pid_t>(child_.id()), number);
}

}  // namespace service::test
