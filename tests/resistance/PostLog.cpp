// The posts acknowledged to a writer.
#include "PostLog.h"

#include <new>
#include <stdexcept>

#include <sys/mman.h>

namespace resistance {

PostLog::PostLog() {
    void* memory = mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) {
        throw std::runtime_error("no shared memory");
    }
    shared_ = new (memory) Shared();
}

PostLog::~PostLog() { munmap(shared_, sizeof(Shared)); }

void PostLog::announce(const Post& post) {
    shared_->posts.at(shared_->announced) = post;
    ++shared_->announced;
}

void PostLog::acknowledge(dbase::RecordNumber number) {
    shared_->posts.at(shared_->acknowledged).number = number;
    ++shared_->acknowledged;
}

void PostLog::clear() {
    shared_->announced = 0;
    shared_->acknowledged = 0;
    shared_->stop = false;
}

std::optional<Post> PostLog::inFlight() const {
    if (shared_->announced == shared_->acknowledged) {
        return std::nullopt;
    }
    return shared_->posts.at(shared_->acknowledged);
}

} // namespace resistance
