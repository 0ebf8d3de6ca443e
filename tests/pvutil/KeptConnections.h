// Whether the transport of this system keeps a connection for the next request.
#pragma once

namespace kzn::test {

bool keepsConnections() noexcept;

}  // namespace kzn::test
