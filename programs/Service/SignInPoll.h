// Waits until a user has confirmed a sign-in.
#pragma once

#include "TarnwickBase/EndSignals.h"
#include "TarnwickCore/Service/APIClient.h"

namespace tarnwick {

// Asks once per interval, first after one interval, also after lost connections and while the
// service is busy. Blocks until the user confirms. Throws CommandError if the code is no longer
// valid (after half an hour if the service gives no date) and at Ctrl-C; ServiceError if the
// service refuses.
Approved approvalOf(const LinkStart& start, const APIClient& client, HeldSignals& signals);

} // namespace tarnwick
