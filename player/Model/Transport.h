// The clock of a document; see there.
#pragma once

#include "TarnwickCore/Performance/Transport.h"
