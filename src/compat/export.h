#pragma once

#include <QtCore/QtGlobal>

// What the agent's library offers to the application. Where a linker script decides, src/agent/exports.map names the same.
#ifdef QTDRIVER_LIBRARY
#define QTDRIVER_EXPORT Q_DECL_EXPORT
#else
#define QTDRIVER_EXPORT Q_DECL_IMPORT
#endif
