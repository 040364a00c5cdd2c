// Finds a name for an undo file.
#include "loading/undo_file.h"

#include <filesystem>

#include "dbase/system/error.h"
#include "loading/failure.h"

namespace loading {

namespace {

constexpr int mostNumbered = 10'000;

std::string numberedName(const std::string& stem, int number) {
    return stem + (number == 1 ? "" : '-' + std::to_string(number)) + ".deshacer";
}

/// Also for a link that leads nowhere.
bool isTaken(const std::string& path) {
    std::error_code problem;
    return std::filesystem::symlink_status(path, problem).type() != std::filesystem::file_type::not_found;
}

} // namespace

std::unique_ptr<UndoWriter> createUndoFile(const std::string& named, const std::string& stem,
                                           const std::string& table, const std::string& order) {
    if (!named.empty()) {
        return std::make_unique<UndoWriter>(named, table, order);
    }
    for (int number = 1;; ++number) {
        try {
            return std::make_unique<UndoWriter>(numberedName(stem, number), table, order);
        } catch (const dbase::Error& error) {
            if (error.code() != dbase::ErrorCode::Exists || number == mostNumbered) {
                throw;
            }
        }
    }
}

std::string freeUndoFile(const std::string& named, const std::string& stem) {
    if (!named.empty()) {
        if (isTaken(named)) {
            throw Failure("«" + named + "» ya existe. No se ha cambiado nada.");
        }
        return named;
    }
    int number = 1;
    while (number < mostNumbered && isTaken(numberedName(stem, number))) {
        ++number;
    }
    return numberedName(stem, number);
}

} // namespace loading
