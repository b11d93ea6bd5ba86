#pragma once

// The names by which the functions of Qt are found in its libraries, where nothing is linked: as each compiler writes
// them for 64-bit programs.
namespace compat {

#ifdef _MSC_VER
const char applicationInstanceSymbol[] = "?self@QCoreApplication@@0PEAV1@EA";
const char currentThreadSymbol[] = "?currentThread@QThread@@SAPEAV1@XZ";
const char threadOfSymbol[] = "?thread@QObject@@QEBAPEAVQThread@@XZ";
const char addPostRoutineSymbol[] = "?qAddPostRoutine@@YAXP6AXXZ@Z";
const char blockSignalsSymbol[] = "?blockSignals@QObject@@QEAA_N_N@Z";
const char abortSymbol[] = "?abort@QAbstractSocket@@QEAAXXZ";
const char socketStateSymbol[] = "?state@QAbstractSocket@@QEBA?AW4SocketState@1@XZ";
#else
const char applicationInstanceSymbol[] = "_ZN16QCoreApplication4selfE";
const char currentThreadSymbol[] = "_ZN7QThread13currentThreadEv";
const char threadOfSymbol[] = "_ZNK7QObject6threadEv";
const char addPostRoutineSymbol[] = "_Z15qAddPostRoutinePFvvE";
const char blockSignalsSymbol[] = "_ZN7QObject12blockSignalsEb";
const char abortSymbol[] = "_ZN15QAbstractSocket5abortEv";
const char socketStateSymbol[] = "_ZNK15QAbstractSocket5stateEv";
#endif

} // namespace compat
