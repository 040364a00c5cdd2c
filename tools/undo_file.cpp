// Finds a name for an undo file.
#include "tools/undo_file.h"

#include "dbase/system/error.h"

namespace ambcp {

std::unique_ptr<loading::UndoWriter> createUndoFile(const std::string& named, const std::string& stem,
                                                    const std::string& table, const std::string& order) {
    if (!named.empty()) {
        return std::make_unique<loading::UndoWriter>(named, table, order);
    }
    constexpr int most = 10'000;
    for (int number = 1;; ++number) {
        try {
            return std::make_unique<loading::UndoWriter>(
                stem + (number == 1 ? "" : '-' + std::to_string(number)) + ".deshacer", table, order);
        } catch (const dbase::Error& error) {
            if (error.code() != dbase::ErrorCode::Exists || number == most) {
                throw;
            }
        }
    }
}

} // namespace ambcp
