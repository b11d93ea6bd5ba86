#pragma once

#include <cstddef>

class STWidgetProxy;

namespace proxy {

// A supported Qt class and what makes its proxy. The caller owns what make() returns.
struct ProxyTableRow
{
    const char* qtClassName;
    STWidgetProxy* (*make)();
};

// The registry's only way to the class proxies. Defined with them, in proxies/proxytable.cpp.
extern const ProxyTableRow proxyTable[];
extern const std::size_t proxyTableSize;

} // namespace proxy
