// What holds after an edition was loaded, whatever it was.
#pragma once

#include "DirectoryTables.h"

namespace trial {

/// Ends the program where the tables after a load break one of these, compared with those before it: a key
/// is there once, and an official one is not in the users' block; what was the users' own is as it was; each
/// row that was written has its provenance, and bounds in order; what the office calls by the same key keeps
/// its CODIGO1; and no official row shares more numbers than before with a user's row of another code.
void requireSound(const DirectoryTables& tables, const DirectoryTables::AllRows& before,
                  const DirectoryTables::AllRows& after);

} // namespace trial
