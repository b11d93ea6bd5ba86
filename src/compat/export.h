#pragma once

#include <QtCore/QtGlobal>

// Marks the functions and classes that the agent's library exports. Where a linker script decides, src/agent/exports.map names the same.
#ifdef QTDRIVER_LIBRARY
#define QTDRIVER_EXPORT Q_DECL_EXPORT
#else
#define QTDRIVER_EXPORT Q_DECL_IMPORT
#endif
