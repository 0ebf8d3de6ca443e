#include "service/store/PrivateFile.h"

#include <sys/stat.h>

namespace service::store {

void openPrivately(const std::string& /*path*/, const std::function<void()>& open)
{
    // It stays: the log is made whenever the file is opened.
    umask(S_IRWXG | S_IRWXO);
    open();
}

}  // namespace service::store
