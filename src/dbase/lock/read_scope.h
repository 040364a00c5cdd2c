// Performs several reads of one operation under one lock.
#pragma once

#include "AmbrelExport.h"

namespace dbase {

/// During its lifetime every table that this thread reads keeps its shared lock from one read to the next, so
/// that only the first read pays for the lock and the checks that follow it. After 20 ms at most the locks
/// are released, waiting writers go first, and the next read takes them again; a change, or waiting for a
/// lock, releases them at once. Only for reads in close succession, never around a message or an event loop,
/// where no read would release the locks. Scopes nest; the outermost one counts.
class AMBREL_EXPORT ReadScope {
public:
    ReadScope();
    ~ReadScope();
    ReadScope(const ReadScope&) = delete;
    ReadScope& operator=(const ReadScope&) = delete;

    /// Releases every lock that this thread keeps. The scopes continue: the next read takes its lock again.
    static void letGo();
};

} // namespace dbase
