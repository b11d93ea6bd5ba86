#pragma once

#include <cstddef>

class STWidgetProxy;

namespace proxy {

// A supported Qt class and the function that makes its proxy. The caller owns the result of make().
struct ProxyTableRow
{
    const char* qtClassName;
    STWidgetProxy* (*make)();
};

// The registry's only way to the class proxies. Defined with them, in proxies/proxytable.cpp.
extern const ProxyTableRow proxyTable[];
extern const std::size_t proxyTableSize;

} // namespace proxy
