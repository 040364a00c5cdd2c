// A journal's place in memory.
#include "MemoryJournal.h"

#include <utility>

#include "dbase/system/error.h"

namespace dbase::test {

namespace {
constexpr const char* path = "MEMORIA.AMJ";
} // namespace

void MemoryJournal::requireWritable() const {
    if (!writable_) {
        throw Error(ErrorCode::AccessDenied, path, "no se puede escribir en la carpeta");
    }
}

std::unique_ptr<File> MemoryJournal::openExisting() {
    return name_->content ? std::make_unique<MemoryFile>(name_->content, path, writable_) : nullptr;
}

std::unique_ptr<File> MemoryJournal::create() {
    requireWritable();
    name_->content = std::make_shared<MemoryContent>();
    return std::make_unique<MemoryFile>(name_->content, path);
}

void MemoryJournal::remove() {
    requireWritable();
    name_->content.reset();
}

std::string MemoryJournal::setAside() {
    requireWritable();
    name_->aside = std::exchange(name_->content, nullptr);
    return std::string(path) + ".apartado";
}

} // namespace dbase::test
