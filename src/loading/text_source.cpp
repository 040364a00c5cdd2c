// Reads text from memory, a file or standard input.
#include "loading/text_source.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>

#include <fcntl.h>
#include <unistd.h>

#include "dbase/system/system_reason.h"
#include "loading/failure.h"

namespace loading {

namespace {

TextSource descriptorSource(int descriptor, const std::string& name) {
    return [descriptor, name](std::span<char> room) {
        while (true) {
            const ssize_t got = ::read(descriptor, room.data(), room.size());
            if (got >= 0) {
                return static_cast<std::size_t>(got);
            }
            if (errno != EINTR) {
                throw Failure(name + ": no se puede leer: " + dbase::systemReason(errno));
            }
        }
    };
}

} // namespace

TextSource textSource(std::string_view text) {
    return [text](std::span<char> room) mutable {
        const std::size_t size = std::min(room.size(), text.size());
        std::copy_n(text.begin(), size, room.begin());
        text.remove_prefix(size);
        return size;
    };
}

TextSource fileSource(const std::string& path) {
    const int opened = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (opened < 0) {
        throw Failure(path + ": no se puede abrir: " + dbase::systemReason(errno));
    }
    const std::shared_ptr<const int> descriptor(new int(opened), [](const int* held) {
        ::close(*held);
        delete held;
    });
    return
        [descriptor, source = descriptorSource(opened, path)](std::span<char> room) { return source(room); };
}

TextSource standardInput(const std::string& name) { return descriptorSource(STDIN_FILENO, name); }

std::string wholeText(const TextSource& source) {
    std::string text;
    std::array<char, 4096> piece{};
    while (const std::size_t size = source(piece)) {
        text.append(piece.data(), size);
    }
    return text;
}

} // namespace loading
