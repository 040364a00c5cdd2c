// Where an order that changes rows keeps what was in them.
#pragma once

#include <memory>
#include <string>

#include "loading/undo_writer.h"

namespace loading {

/// Creates the undo file: the one named, or the first of STEM.deshacer, STEM-2.deshacer… that does not exist
/// yet. `table`: whose permissions it gets. Errors: those of UndoWriter.
[[nodiscard]] std::unique_ptr<UndoWriter> createUndoFile(const std::string& named, const std::string& stem,
                                                         const std::string& table, const std::string& order);

/// The path of an undo file that is created later: the one named, or as above. Errors: Failure if the one
/// named exists.
[[nodiscard]] std::string freeUndoFile(const std::string& named, const std::string& stem);

} // namespace loading
