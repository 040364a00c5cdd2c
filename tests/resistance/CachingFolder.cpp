// Chooses what has arrived of the changes of names since the last sync of the folder.
#include "CachingFolder.h"

#include <algorithm>

namespace dbase::test {

CachingFolder::CachingFolder(const FolderImage& image) : onDisk_(image.names), now_(image.names) {
    for (const auto& [number, content] : image.contents) {
        files_.emplace(number, CachedFile(content));
    }
}

void CachingFolder::apply(Names& names, const NameChange& change) {
    names.erase(change.removed);
    if (!change.given.empty()) {
        names[change.given] = change.file;
    }
}

void CachingFolder::change(const NameChange& change) {
    apply(now_, change);
    pending_.push_back(change);
}

void CachingFolder::apply(const FolderEvent& event) {
    using Kind = FolderEvent::Kind;
    switch (event.kind) {
    case Kind::Make:
        files_.emplace(event.file, CachedFile());
        change({{}, event.name, event.file});
        break;
    case Kind::Rename:
        change({event.name, event.newName, now_.at(event.name)});
        break;
    case Kind::Remove:
        change({event.name, {}, 0});
        break;
    case Kind::Write:
        files_.at(event.file).write(event.offset, event.bytes);
        break;
    case Kind::Resize:
        files_.at(event.file).resize(event.offset);
        break;
    case Kind::Sync:
        files_.at(event.file).sync();
        break;
    case Kind::SyncFolder:
        onDisk_ = now_;
        pending_.clear();
        break;
    }
}

// Either the changes of names arrived in order up to one of them, or any of them did.
FolderImage CachingFolder::survivor(std::mt19937& random) const {
    FolderImage image{onDisk_, {}};
    const bool inOrder = random() % 3 == 0;
    const std::size_t arrived = random() % (pending_.size() + 1);
    for (std::size_t i = 0; i < pending_.size(); ++i) {
        if (inOrder ? i < arrived : random() % 2 == 0) {
            apply(image.names, pending_[i]);
        }
    }
    for (const auto& [name, number] : image.names) {
        image.contents[number] = files_.at(number).survivor(random);
    }
    return image;
}

} // namespace dbase::test
