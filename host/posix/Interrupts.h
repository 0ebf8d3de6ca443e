// How the waits of this system learn that the user has had enough.
#pragma once

namespace host::system {

/// Waits until `file` can be read. Throws a Failure of status stopped where the user ends the wait.
void waitForInput(int file);

}  // namespace host::system
