// The streets of the provinces that were asked for, within a budget of memory, and those of one place.
#pragma once

#include <chrono>
#include <functional>
#include <list>
#include <memory>
#include <string>
#include <vector>

#include "dbase/dataset/dataset.h"
#include "suggest/Kept.h"
#include "suggest/NameMatch.h"
#include "suggest/NameView.h"
#include "suggest/ProvinceNames.h"

namespace ambrel::suggest {

/// A street of a place: a name with a type, in a municipality.
struct PlacedStreet {
    NameNumber name;
    std::uint16_t type;
    bool isOwn;          // has a row with the municipality's own code
    std::string ineCode; // of its municipality; empty if the rows do not say
};

/// The streets of a place within one province.
struct PlacedStreets {
    std::shared_ptr<const ProvinceNames> province;
    std::string digits;                // of the province
    std::vector<PlacedStreet> streets; // by name
    NameView view;

    [[nodiscard]] std::size_t bytes() const;
};

class StreetStore {
public:
    using Clock = std::chrono::steady_clock;
    /// The municipality in which a row of POSTAL lies, as far as a place is concerned; null if not in it.
    using Owner = std::function<const std::string*(const StreetPlace&)>;

    StreetStore(std::string database, std::size_t memory);

    /// Reads until a moment what is missing of a province; true when nothing is.
    [[nodiscard]] bool renew(const std::string& province, Clock::time_point end);
    /// The streets of a place, whose key says everything that `owner` depends on. Call after renew().
    [[nodiscard]] std::shared_ptr<const PlacedStreets> placed(const std::string& province,
                                                              const std::string& key, const Owner& owner);
    /// Whether a folded word stands in any name of a province. Call after renew().
    [[nodiscard]] bool hasWord(const std::string& province, std::string_view folded);
    [[nodiscard]] std::size_t bytes() const;

private:
    struct Province {
        std::string digits;
        Kept<ProvinceNames, ProvinceReading> kept;
    };
    struct View {
        std::string key;
        std::shared_ptr<const PlacedStreets> streets;
    };
    [[nodiscard]] Province& province(const std::string& digits);
    void keepWithinBudget();
    void dropOldestView();
    void dropViewsOf(const std::shared_ptr<const ProvinceNames>& names);

    std::string database_;
    std::size_t memory_;
    dbase::Dataset stamps_;         // open all the time, to see changes
    std::list<Province> provinces_; // the one used last first
    std::list<View> views_;         // likewise
    TextMap<std::list<View>::iterator> viewsByKey_;
    std::size_t viewBytes_ = 0;
};

} // namespace ambrel::suggest
