// Waiting until a user has confirmed a sign-in.
#pragma once

#include "TarnwickBase/EndSignals.h"
#include "TarnwickCore/Service/APIClient.h"

namespace tarnwick {

// Asks once an interval, the first time after one, and on through lost connections and a service
// that has too much to do. Blocks until the user confirms. Throws CommandError: where the code is
// no longer valid, which without a date of the service's is after half an hour, and at Ctrl-C;
// ServiceError where the service refuses.
Approved approvalOf(const LinkStart& start, const APIClient& client, HeldSignals& signals);

} // namespace tarnwick
