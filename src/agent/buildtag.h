#pragma once

#include <QtCore/QString>

namespace agent {

// The tag in the greeting and the name of an outside tool's per-build folder: "qt486_vs2015_x64". It names the build
// that servers and tools know the agent by, so it is the same whichever Qt and compiler built this one.
QString composeBuildTag();

} // namespace agent
