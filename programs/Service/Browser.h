// The user's own browser.
#pragma once

#include "TarnwickPlatform/Net/URL.h"

namespace tarnwick {

// Has it show the page, by xdg-open. Whether that could be started; never where there is no
// display, and only for pages of http and https. Does not wait.
bool showInBrowser(const URL& page);

} // namespace tarnwick
