// What a program finds of the exchange of another one that was stopped, and how it goes on with it.
#pragma once

#include <memory>
#include <string>

#include "dbase/system/folders.h"
#include "dbase/table/exchange_intention.h"

namespace dbase {

/// Whether an intention beside this table names it. The table's index then bears the in-update mark, or there
/// is none. `isRemote`: as File::isRemote(), then its server is asked.
[[nodiscard]] bool isInExchange(const std::string& tableFile, Folders& folders, bool isRemote = false);

/// completeExchange() for a program that is opening a table. Errors: Error(StaleIndex), which names the
/// table, if the system does not permit it here.
void concludeExchangeOf(const std::string& tableFile, Folders& folders);

/// Creates the file of an intention and holds its lock. Errors: Error(AccessDenied) if not everybody who
/// could write it may write its tables.
[[nodiscard]] std::unique_ptr<File> createIntention(const std::string& folder, const Intention& intention,
                                                    Folders& folders);
/// Its removal is then on the disk.
void removeIntention(const File& file, Folders& folders);

} // namespace dbase
