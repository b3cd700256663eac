// Makes NetErrors of the library's error codes.
#pragma once

#include "TarnwickPlatform/Net/NetError.h"

#include <curl/curl.h>

namespace tarnwick {

// The error of the transfer of `easy`, which ended with `code`, not CURLE_OK.
NetError netError(CURLcode code, CURL* easy);

} // namespace tarnwick
