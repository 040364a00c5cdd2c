// Listing folders.
#include "services/Rficheros.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

#include "services/FileMask.h"

namespace fs = std::filesystem;

namespace ambrel {
namespace {

constexpr int systemFile = 4;
/// Entries with one of these are listed only on request; the other attributes never exclude an entry.
constexpr int specialKinds = file_attribute::hidden | systemFile | file_attribute::folder;

bool isSeparator(char c) { return c == '/' || c == '\\'; }

bool isDots(std::string_view name) { return name == "." || name == ".."; }

AttributeFunction& attributeFunction() {
    static AttributeFunction function = attributesOnDisk;
    return function;
}

/// Names in a folder, preceded by "." and ".."; empty if it cannot be read.
std::vector<std::string> namesIn(const std::string& folder) {
    std::vector<std::string> names;
    std::error_code error;
    fs::directory_iterator entry(folder.empty() ? "." : folder, error);
    if (error) {
        return names;
    }
    while (entry != fs::directory_iterator()) {
        names.push_back(entry->path().filename().string());
        entry.increment(error);
        if (error) {
            break;
        }
    }
    std::ranges::sort(names);
    names.insert(names.begin(), {".", ".."});
    return names;
}

} // namespace

std::string nativePath(std::string_view path) {
    std::string native(path);
    std::ranges::replace(native, '\\', '/');
    return native;
}

int attributesOnDisk(const std::string& path) {
    const std::string name = fs::path(nativePath(path)).filename().string();
    std::error_code error;
    const fs::file_status status = fs::status(nativePath(path), error);
    int attributes = 0;
    if (fs::is_directory(status)) {
        attributes |= file_attribute::folder;
    }
    if (isDots(name)) {
        return attributes;
    }
    if (fs::exists(status) && (status.permissions() & fs::perms::owner_write) == fs::perms::none) {
        attributes |= file_attribute::readOnly;
    }
    if (name.starts_with('.')) {
        attributes |= file_attribute::hidden;
    }
    return attributes;
}

void setAttributeFunction(AttributeFunction function) {
    attributeFunction() = function ? std::move(function) : attributesOnDisk;
}

FileSearch::FileSearch(const std::string& mask, int attributes) : attributes_(attributes) {
    const std::string path = nativePath(mask);
    const std::size_t separator = path.rfind('/');
    mask_ = path.substr(separator == std::string::npos ? 0 : separator + 1);
    if (separator != std::string::npos) {
        folder_ = path.substr(0, std::max<std::size_t>(separator, 1)); // the root keeps its separator
    }
}

std::optional<FileSearch::Entry> FileSearch::findFirst() {
    entries_.clear();
    position_ = 0;
    for (std::string& name : namesIn(folder_)) {
        if (!matchesMask(name, mask_)) {
            continue;
        }
        const int attributes = attributeFunction()(SlashSep(folder_, name, '/'));
        if ((attributes & specialKinds & ~attributes_) == 0) {
            entries_.push_back({std::move(name), attributes});
        }
    }
    return findNext();
}

std::optional<FileSearch::Entry> FileSearch::findNext() {
    if (position_ == entries_.size()) {
        return std::nullopt;
    }
    return entries_[position_++];
}

} // namespace ambrel

std::string SlashSep(std::string_view directory, std::string_view name, char separator) {
    std::string path(directory);
    if (!path.empty() && !ambrel::isSeparator(path.back())) {
        path += separator;
    }
    if (!path.empty() && !name.empty() && ambrel::isSeparator(name.front())) {
        name.remove_prefix(1);
    }
    return path.append(name);
}

void FindFileNoRecursivo(const std::string& mask, int attributes, std::vector<std::string>& list) {
    list.clear();
    ambrel::FileSearch search(mask, attributes);
    for (auto entry = search.findFirst(); entry; entry = search.findNext()) {
        if (!ambrel::isDots(entry->name)) {
            list.push_back(SlashSep(search.folder(), entry->name, '/'));
        }
    }
}
