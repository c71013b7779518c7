// The boundary between the toolkit's event loop and our handlers. Nothing that a handler throws or leaves
// pending passes through the loop: it is taken off and reported here, and the window stays usable.
#ifndef WIN_GUARD_H
#define WIN_GUARD_H

#include "lib/xfail.h"
#include <functional>

/// Calls `handler` as a root of the failure protocol. Does nothing while a failure is pending.
void GuardedCall(const std::function<void()> &handler);

/// The same, but the report is left to the caller, for where no message box may open. @return what was taken
/// off, XNULL where nothing was
XCODE GuardedFailure(const std::function<void()> &handler);
/// Reports a failure that GuardedFailure took off.
void ReportFailure(XCODE code);

#endif
