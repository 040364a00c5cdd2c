// Reading the names of municipalities.
#include "suggest/MunicipalityNames.h"

#include <algorithm>
#include <fstream>
#include <numeric>

#include "data/TableDefinitions.h"
#include "dbase/dbf/codepage.h"
#include "dbase/lock/read_scope.h"
#include "dbase/system/error.h"
#include "dbase/system/trim.h"

namespace ambrel::suggest {
namespace {

[[noreturn]] void refuse(const std::string& file) {
    throw dbase::Error(dbase::ErrorCode::NotFound, file, "no se puede leer el fichero");
}

} // namespace

const Municipality* MunicipalityNames::find(const std::string& ineCode) const {
    if (ineCode.empty()) {
        return nullptr; // of the rows that do not say which municipality they are of
    }
    const auto found = std::ranges::lower_bound(municipalities, ineCode, {}, &Municipality::ineCode);
    return found != municipalities.end() && found->ineCode == ineCode ? &*found : nullptr;
}

std::size_t MunicipalityNames::bytes() const {
    constexpr std::size_t perMunicipality = sizeof(Municipality) + 2 * sizeof(std::string);
    return pool.bytes() + aliases.capacity() * sizeof(Alias) + municipalities.size() * perMunicipality +
           (own ? own->bytes() : 0) + (all ? all->bytes() : 0);
}

std::vector<OtherName> readOtherNames(const std::string& file) {
    std::ifstream lines(file);
    if (!lines) {
        refuse(file);
    }
    std::vector<OtherName> names;
    std::string line;
    for (std::uint32_t number = 1; std::getline(lines, line); ++number) {
        if (line.starts_with("\xEF\xBB\xBF")) {
            line.erase(0, 3);
        }
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        if (line.empty() || line.front() == '#' || line.starts_with("COD_INE")) {
            continue;
        }
        const std::size_t comma = line.find(',');
        std::string name = comma == std::string::npos ? std::string() : line.substr(comma + 1);
        if (name.size() >= 2 && name.front() == '"' && name.back() == '"') {
            name = name.substr(1, name.size() - 2);
        }
        const auto bytes = dbase::CodePage::windows1252().fromUtf8(name);
        if (comma != 5 || !bytes || bytes->empty()) {
            throw dbase::Error(dbase::ErrorCode::BadValue, file,
                               "la línea " + std::to_string(number) + " no es COD_INE,NOMBRE");
        }
        names.push_back({line.substr(0, comma), *bytes});
    }
    if (lines.bad()) {
        refuse(file);
    }
    return names;
}

MunicipalityReading::MunicipalityReading(const std::string& database, std::vector<OtherName> others)
    : rows_(database, "MUNICIPI", "COD_INE"), others_(std::move(others)) {
    rows_.open();
    read_->stamp = TableStamp::of(rows_);
    isAtEnd_ = rows_.isEmpty();
}

void MunicipalityReading::addName(std::uint32_t municipality, const std::string& name, NameKind kind) {
    if (name.empty() || !known_.emplace(municipality, name).second) {
        return;
    }
    read_->pool.add(name);
    read_->aliases.push_back({municipality, kind});
    // Either language of "ALICANTE/ALACANT" alone.
    if (name.find('/') == std::string::npos) {
        return;
    }
    const NameKind part = kind == NameKind::Own ? NameKind::Other : kind;
    for (std::size_t begin = 0; begin <= name.size();) {
        const std::size_t end = std::min(name.find('/', begin), name.size());
        addName(municipality,
                std::string(dbase::trimmedLine(std::string_view(name).substr(begin, end - begin))), part);
        begin = end + 1;
    }
}

void MunicipalityReading::takeRow() {
    const std::string code = ineCode_.text(), name = name_.text();
    const auto [entry, isNew] = numbers_.try_emplace(code, static_cast<std::uint32_t>(gathered_.size()));
    if (isNew) {
        gathered_.emplace_back(code);
    }
    const bool isEntity = isEntity_.logical();
    gathered_[entry->second].add(postalCode_.text(), province_.text(), name, isEntity, onlyCode_.text());
    addName(entry->second, name, isEntity ? NameKind::Locality : NameKind::Own);
}

bool MunicipalityReading::readUntil(std::chrono::steady_clock::time_point end) {
    const dbase::ReadScope scope;
    constexpr int rowsBetweenLooks = 64;
    while (!isAtEnd_) {
        for (int i = 0; i < rowsBetweenLooks && !isAtEnd_; ++i) {
            takeRow();
            isAtEnd_ = !rows_.next();
        }
        if (std::chrono::steady_clock::now() >= end) {
            break;
        }
    }
    return isAtEnd_;
}

std::shared_ptr<MunicipalityNames> MunicipalityReading::take() {
    for (const OtherName& other : others_) {
        if (const auto entry = numbers_.find(other.ineCode); entry != numbers_.end()) {
            addName(entry->second, other.name, NameKind::Other);
        }
    }
    for (MunicipalityRows& rows : gathered_) {
        read_->municipalities.push_back(rows.finish());
    }
    read_->pool.finish();
    std::vector<NameNumber> all(read_->pool.nameCount()), own;
    std::iota(all.begin(), all.end(), 0U);
    std::ranges::copy_if(all, std::back_inserter(own),
                         [&](NameNumber name) { return read_->aliases[name].kind != NameKind::Locality; });
    read_->own.emplace(read_->pool, std::move(own));
    read_->all.emplace(read_->pool, std::move(all));
    return std::move(read_);
}

} // namespace ambrel::suggest
