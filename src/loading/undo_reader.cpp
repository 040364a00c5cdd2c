// Reads an undo file.
#include "loading/undo_reader.h"

#include <algorithm>
#include <map>
#include <utility>

#include "loading/failure.h"

namespace loading {

namespace {

constexpr std::size_t pieceSize = std::size_t{1} << 20;
/// The longest line of the widest table, every byte escaped, has fewer bytes.
constexpr std::size_t maxLineSize = std::size_t{1} << 22;

} // namespace

UndoReader::UndoReader(const std::string& path) : file_(dbase::openFile(path, dbase::OpenMode::ReadOnly)) {
    readLines();
    dropUnmade();
}

void UndoReader::readLines() {
    const std::uint64_t size = file_->size();
    std::string buffer;
    std::uint64_t begin = 0; // of the buffer in the file
    while (begin + buffer.size() < size) {
        const std::size_t held = buffer.size();
        buffer.resize(held + std::min<std::uint64_t>(pieceSize, size - begin - held));
        file_->read(begin + held, std::span(buffer).subspan(held));
        std::size_t at = 0;
        for (std::size_t end = 0; (end = buffer.find('\n', at)) != std::string::npos; at = end + 1) {
            take(std::string_view(buffer).substr(at, end - at), begin + at);
        }
        buffer.erase(0, at);
        begin += at;
        if (buffer.size() > maxLineSize) {
            throw Failure(path() + ": tiene líneas demasiado largas; no es un fichero de deshacer");
        }
    }
    if (line_ == 0 && !undoSignature.starts_with(buffer.substr(0, undoSignature.size()))) {
        throw Failure(path() + ": no es un fichero de deshacer");
    }
    if (!damaged_.empty() && damaged_.back() == line_) { // several sectors of the last batch may be missing
        std::uint64_t last = line_;
        while (!damaged_.empty() && damaged_.back() == last) {
            damaged_.pop_back();
            --last;
        }
    }
}

void UndoReader::takeHeading(std::string_view line) const {
    if (!line.starts_with(undoSignature)) {
        throw Failure(path() + ": no es un fichero de deshacer");
    }
    const std::vector<std::string_view> values = undoValues(line);
    if (!isUndoHeading(values)) {
        throw Failure(path() + (values.empty() ? ": su primera línea está estropeada"
                                               : ": lo escribió una versión posterior de este programa"));
    }
}

void UndoReader::take(std::string_view line, std::uint64_t offset) {
    ++line_;
    if (line_ == 1) {
        takeHeading(line);
        return;
    }
    const std::vector<std::string_view> values = undoValues(line);
    if (auto table = readUndoTable(values, tables_);
        table && values[1] == std::to_string(tables_.size() + 1)) {
        tables_.push_back(*std::move(table));
        return;
    }
    if (const auto announced = readUndoEnd(values)) {
        announced_ = announced;
        return;
    }
    const std::optional<UndoEntry> head = readUndoHead(values);
    if (!head || head->table >= tables_.size()) {
        damaged_.push_back(line_);
    } else if (head->kind == UndoKind::Unmade) {
        ++entries_;
        unmade_.push_back({places_.size(), head->number, head->table});
    } else if (!readUndoEntry(values, tables_[head->table])) {
        damaged_.push_back(line_);
    } else {
        ++entries_;
        places_.push_back({offset, static_cast<std::uint32_t>(line.size()), head->number, head->table});
    }
}

std::uint64_t UndoReader::missingEntries() const {
    const std::uint64_t found = entries_ + damaged_.size();
    return announced_ && *announced_ > found ? *announced_ - found : 0;
}

/// From the last entry to the first, so that each is looked at once, however many lines say that one is void.
void UndoReader::dropUnmade() {
    std::map<std::pair<std::size_t, dbase::RecordNumber>, std::size_t> pending;
    std::vector<Place> kept;
    for (std::size_t i = unmade_.empty() ? 0 : places_.size(); i > 0; --i) {
        for (; !unmade_.empty() && unmade_.back().places >= i; unmade_.pop_back()) {
            ++pending[{unmade_.back().table, unmade_.back().number}];
        }
        const Place& place = places_[i - 1];
        const auto found = pending.find({place.table, place.number});
        if (found == pending.end() || found->second == 0) {
            kept.push_back(place);
        } else {
            --found->second;
        }
    }
    if (!pending.empty()) {
        places_.assign(kept.rbegin(), kept.rend());
    }
    unmade_.clear();
}

UndoEntry UndoReader::entry(std::size_t index) const {
    const Place& place = places_.at(index);
    std::string line(place.length, '\0');
    file_->read(place.offset, line);
    const std::vector<std::string_view> values = undoValues(line);
    if (auto entry = readUndoEntry(values, tables_[place.table])) {
        return *std::move(entry);
    }
    throw Failure(path() + ": otro programa lo ha cambiado mientras se leía");
}

} // namespace loading
