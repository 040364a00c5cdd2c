// Reading a province's streets.
#include "suggest/ProvinceNames.h"

#include <algorithm>

#include "dbase/lock/read_scope.h"

namespace ambrel::suggest {

std::size_t ProvinceNames::bytes() const {
    return pool.bytes() + entries.capacity() * sizeof(StreetEntry) + places.size() * 2 * sizeof(StreetPlace);
}

ProvinceReading::ProvinceReading(const std::string& database, const std::string& province)
    : streets_(database, "POSTAL", "NOMBREVIA") {
    streets_.open();
    ineCode_ = streets_.findField("COD_INE");
    read_->stamp = TableStamp::of(streets_);
    streets_.setRange({{"PROVINCIA", province}}, {{"PROVINCIA", province}});
    isAtEnd_ = streets_.isEmpty();
}

template<class Value>
std::uint16_t ProvinceReading::numberOf(std::map<Value, std::uint16_t>& known, std::vector<Value>& values,
                                        Value value) {
    const auto [entry, isNew] = known.try_emplace(value, static_cast<std::uint16_t>(values.size()));
    if (isNew) {
        values.push_back(std::move(value));
    }
    return entry->second;
}

void ProvinceReading::takeRow() {
    NamePool& pool = read_->pool;
    std::vector<StreetEntry>& entries = read_->entries;
    const std::string_view name = name_.view();
    if (name.empty()) {
        return;
    }
    // Rows come by name.
    const bool isNew = entries.empty() || pool.stored(entries.back().name) != name;
    const StreetEntry entry{
        isNew ? pool.add(name) : entries.back().name, numberOf(types_, read_->types, type_.text()),
        numberOf(places_, read_->places, {postalCode_.text(), ineCode_ ? ineCode_->text() : std::string()})};
    for (auto other = entries.rbegin(); other != entries.rend() && other->name == entry.name; ++other) {
        if (other->type == entry.type && other->place == entry.place) {
            return;
        }
    }
    entries.push_back(entry);
}

bool ProvinceReading::readUntil(std::chrono::steady_clock::time_point end) {
    const dbase::ReadScope scope;
    constexpr int rowsBetweenLooks = 64;
    while (!isAtEnd_) {
        for (int i = 0; i < rowsBetweenLooks && !isAtEnd_; ++i) {
            takeRow();
            isAtEnd_ = !streets_.next();
        }
        if (std::chrono::steady_clock::now() >= end) {
            break;
        }
    }
    return isAtEnd_;
}

std::shared_ptr<ProvinceNames> ProvinceReading::take() {
    read_->pool.finish();
    read_->entries.shrink_to_fit();
    return std::move(read_);
}

} // namespace ambrel::suggest
