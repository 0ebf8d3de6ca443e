// The tests that a question of right is made of.
#pragma once

#include "client/FormBody.h"

namespace wapi {

/// Whether the user may get and set each workspace; `id` is an ID or the loop variable of a script.
template <typename ID>
void writeGetSetTests(FormBody& body, const ID& id)
{
    body.more("<get><cmd>get</cmd><id>", id, "</id><type>workspace</type></get>");
    body.more("<set><cmd>set</cmd><id>", id, "</id><type>workspace</type></set>");
}

}  // namespace wapi
