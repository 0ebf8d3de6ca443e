#include "service/win32/Error.h"

#include <boost/system/error_code.hpp>
#include <stdexcept>

namespace service::win32 {

void fail(const std::string& what, DWORD error)
{
    const boost::system::error_code code(static_cast<int>(error), boost::system::system_category());
    throw std::runtime_error(what + ": " + code.message());
}

}  // namespace service::win32
