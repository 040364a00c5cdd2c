// A directory of places given as data.
#include <algorithm>
#include <utility>

#include "tools/callejero/Directory.h"

namespace callejero {
namespace {

template<class Place>
const Place* named(const std::vector<Place>& places, const std::string& name) {
    const auto found = std::ranges::find(places, name, &Place::name);
    return found == places.end() ? nullptr : &*found;
}

class ListedDirectory : public Directory {
public:
    explicit ListedDirectory(std::vector<Province> provinces) : provinces_(std::move(provinces)) {}

    std::string provinces() const override { return provincesAnswer(provinces_); }

    std::string municipalities(const std::string& province) const override {
        const Province* const found = named(provinces_, province);
        return found ? municipalitiesAnswer(*found) : errorAnswer(Operation::Municipalities, noSuchProvince);
    }

    std::string streets(const std::string& province, const std::string& municipality) const override {
        const Province* const found = named(provinces_, province);
        if (!found) {
            return errorAnswer(Operation::Streets, noSuchProvince);
        }
        const Municipality* const place = named(found->municipalities, municipality);
        return place ? streetsAnswer(*found, *place) : errorAnswer(Operation::Streets, noSuchMunicipality);
    }

private:
    std::vector<Province> provinces_;
};

} // namespace

std::unique_ptr<const Directory> listedDirectory(std::vector<Province> provinces) {
    return std::make_unique<ListedDirectory>(std::move(provinces));
}

std::unique_ptr<const Directory> sampleDirectory() { return listedDirectory(sampleProvinces()); }

} // namespace callejero
