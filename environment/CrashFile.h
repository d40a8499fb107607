// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The filter for unhandled faults. It writes a file in "/Exception" below the data root, named by the local
// date and time as "yyyy_MM_dd_hh_mm_ss" + ".dmp", with the program's version and build id, the signal, the
// fault address and the stack. Then the signal ends the process, so that the system can leave a core dump.
#pragma once

// Installs the filter for the whole process; a second call changes nothing. Everything that
// is not async-signal-safe (paths, the offset of the local time, the unwinder's memory) is prepared here. A
// stack overflow is caught on the calling thread. Main thread.
void installCrashFilter();
