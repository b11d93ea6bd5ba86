#pragma once

#include <QtCore/QtGlobal>

// Marks the functions and classes that the agent's library exports. Where a linker script decides, src/agent/exports.map
// names the same. QTDRIVER_LIBRARY is defined for what becomes the library, QTDRIVER_STATIC where its objects are linked
// without it.
#if defined(QTDRIVER_LIBRARY)
#define QTDRIVER_EXPORT Q_DECL_EXPORT
#elif defined(QTDRIVER_STATIC)
#define QTDRIVER_EXPORT
#else
#define QTDRIVER_EXPORT Q_DECL_IMPORT
#endif
