// The trace channel: lines with a level, handed to whoever listens.
#pragma once

#ifdef _WIN32
#ifdef PVTRACE_BUILDING
#define PVTRACE_API __declspec(dllexport)
#else
#define PVTRACE_API __declspec(dllimport)
#endif
using PvTraceUnit = wchar_t;
#else
#define PVTRACE_API __attribute__((visibility("default")))
using PvTraceUnit = char16_t;
#endif

extern "C" {

/// Receives a line. `text` ends with a zero unit and lives for the call only. A sink must not throw: on Windows each
/// module unwinds by a runtime of its own, and an exception that leaves one ends the process.
using PvTraceSink = void (*)(int level, const PvTraceUnit* text);

/// Hands a line to the sink. Ordinal 6 on Windows.
PVTRACE_API void PvTraceWrite(int level, const PvTraceUnit* text);

/// Directs lines to `sink` from now on; null restores the default, which is the debugger's output on Windows and
/// nothing elsewhere. Ordinal 7 on Windows.
PVTRACE_API void PvTraceSetSink(PvTraceSink sink);

/// Whether a line would reach anybody, as far as can be known: 1 with a sink; without one on Windows where a debugger
/// or another reader of its output is there, and never elsewhere. Ordinal 8 on Windows.
PVTRACE_API int PvTraceListens(void);
}
