#include "connection/LocalNetworkBrowser.h"

std::unique_ptr<LocalNetworkBrowser> createLocalNetworkBrowser()
{
    return nullptr;
}
