#include "TarnwickServe/LivePage.h"

#include "TarnwickServe/LiveModules.h"
#include "TarnwickWeb/Runtime.h"

namespace tarnwick {

std::string livePage(const LivePageAddresses& addresses) {
    const std::string root(addresses.root);
    return "<!doctype html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
           "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
           "<title>Tarnwick</title>\n"
           "<link rel=\"icon\" href=\"data:,\">\n"
           "<link rel=\"stylesheet\" href=\"" +
           root + "live.css\">\n<script type=\"module\" src=\"" + root +
           "live.js\"></script>\n</head>\n<body data-root=\"" + root + "\" data-episode=\"" +
           std::string(addresses.episode) +
           "\">\n<noscript>Episodes are drawn by a script, which this browser does not "
           "run.</noscript>\n</body>\n</html>\n";
}

std::string liveScript() {
    return std::string(webRuntime()) + std::string(liveModules());
}

} // namespace tarnwick
