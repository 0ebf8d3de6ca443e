// Makes the reply to a listing of workspaces, as long as it is wanted and the same in every run.
#pragma once

#include <cstddef>
#include <string>

namespace kzn::bench {

/// The UTF-8 bytes of a reply of three steps without a blank between elements, as the service writes it:
///  - `spaces` workspaces with all nine fields: IDs of 19 characters, names of three words and a number, a user name
///    that is an e-mail address, a description of 8 to 15 words, the address of an icon. Every tenth name and
///    description has letters beyond ASCII, every 100th description a character beyond the basic plane, every 20th name
///    an "&amp;", and each icon's address one;
///  - `spaces` / 10 invitations with all fourteen fields;
///  - `spaces` entries of the user's roles, one role each, every 16th an administrator's.
std::string spaceListReply(int spaces);

/// The same with next to nothing in a workspace, some 320 bytes: no description and no icon, and no invitations.
std::string leanSpaceListReply(int spaces);

/// The first bytes of such replies, whole letters of them: at least so many, and three more at most.
std::string spaceListBytes(std::size_t bytes);

}  // namespace kzn::bench
