// Reads the listings of tables written by other programs.
#include "ForeignTables.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace fs = std::filesystem;

namespace dbase::test {

namespace {

const fs::path folderOfTables = AMBREL_FOREIGN_TABLES;

std::string bytesOfHex(const std::string& hex) {
    std::string bytes;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2) {
        bytes.push_back(static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16)));
    }
    return bytes;
}

// seek eq|ge KEY -> recno|none|eof  # comment
ListedSeek parseSeek(std::istringstream& words) {
    std::string mode, key, arrow, found;
    words >> mode >> key >> arrow >> found;
    ListedSeek seek{mode == "eq", std::nullopt, {}, 0};
    if (key.front() == 'n') {
        seek.number = std::stod(key.substr(1));
    } else {
        seek.key = bytesOfHex(key.substr(2, key.size() - 3)); // x'…'
    }
    if (found != "none" && found != "eof") {
        seek.found = static_cast<RecordNumber>(std::stoul(found));
    }
    return seek;
}

// tag NAME type C keylen 5 unique 0 descending 0 entries 1500 expr …
ListedTag parseTag(std::istringstream& words) {
    ListedTag tag;
    std::string name, value;
    words >> tag.name;
    while (words >> name >> value) {
        if (name == "unique") {
            tag.isUnique = value == "1";
        } else if (name == "descending") {
            tag.isDescending = value == "1";
        } else if (name == "expr") {
            tag.expression = value;
        }
    }
    return tag;
}

void parseLine(const std::string& line, Listing& listing) {
    std::istringstream words(line);
    std::string first;
    words >> first;
    if (first == "table") {
        std::string word, driver;
        words >> listing.table >> word >> listing.records >> word >> driver;
        listing.languageDriver = static_cast<unsigned>(std::stoul(driver, nullptr, 16));
    } else if (first == "deleted") {
        words >> listing.deleted.emplace_back();
    } else if (first == "tag") {
        listing.tags.push_back(parseTag(words));
    } else if (first == "seek") {
        listing.tags.back().seeks.push_back(parseSeek(words));
    } else if (!first.empty() &&
               std::all_of(first.begin(), first.end(), [](char c) { return c >= '0' && c <= '9'; })) {
        listing.tags.back().order.push_back(static_cast<RecordNumber>(std::stoul(first)));
    }
}

} // namespace

Listing listingOf(const std::string& name) {
    Listing listing;
    std::ifstream lines(folderOfTables / (name + ".txt"));
    for (std::string line; std::getline(lines, line);) {
        parseLine(line, listing);
    }
    if (listing.tags.empty()) {
        throw std::runtime_error("no listing of the foreign table " + name);
    }
    return listing;
}

std::string copyForeignTable(const std::string& name, const std::string& folder) {
    const std::string from = folderOfTables / name;
    const std::string to = folder + '/' + name;
    for (const char* extension : {".DBF", ".MDX"}) {
        fs::copy_file(from + extension, to + extension);
        fs::permissions(to + extension, fs::perms::owner_write, fs::perm_options::add);
    }
    return to + ".DBF";
}

} // namespace dbase::test
