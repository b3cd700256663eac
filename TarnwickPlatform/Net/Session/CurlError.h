// What the library's error codes mean to the user.
#pragma once

#include "TarnwickPlatform/Net/NetError.h"

#include <curl/curl.h>

namespace tarnwick {

// Why the transfer of `easy` ended with `code`, which is not CURLE_OK.
NetError netError(CURLcode code, CURL* easy);

} // namespace tarnwick
