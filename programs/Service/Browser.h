// The user's web browser.
#pragma once

#include "TarnwickPlatform/Net/URL.h"

namespace tarnwick {

// Shows the page with xdg-open. Returns whether that was started; false without a display, and for
// pages other than http and https. Does not wait.
bool showInBrowser(const URL& page);

} // namespace tarnwick
