// Writes a made-up edition as the files in which the real one comes.
#include <algorithm>
#include <fstream>
#include <iterator>
#include <map>
#include <stdexcept>
#include <utility>

#include "dbase/dbf/codepage.h"
#include "loading/csv.h"
#include "tools/edition/OfficialEdition.h"
#include "tools/edition/OfficialLines.h"

namespace edition {
namespace {

/// A file of lines in the manner that the options ask for.
class LineFile {
public:
    LineFile(std::string path, const Options& options)
        : path_(std::move(path)), options_(options), file_(path_, std::ios::binary) {}

    void add(std::string line) {
        ++lines_;
        if (options_.badEvery != 0 && lines_ % options_.badEvery == 0) {
            ++bad_;
            line.replace(0, 5, "00???");
        }
        if (options_.hasMoreColumns) {
            line += " 0000X";
        }
        if (options_.cutsBlanks) {
            line.resize(line.find_last_not_of(' ') + 1);
        }
        pending_ += line;
        pending_ += "\r\n";
        if (pending_.size() > std::size_t{1} << 20) {
            file_ << std::exchange(pending_, {});
        }
    }
    /// Ends the file; returns its path.
    std::string finish() {
        file_ << std::exchange(pending_, {});
        file_.close();
        if (!file_) {
            throw std::runtime_error(path_ + " cannot be written");
        }
        return path_;
    }
    [[nodiscard]] std::uint64_t lines() const { return lines_; }
    [[nodiscard]] std::uint64_t bad() const { return bad_; }

private:
    std::string path_;
    const Options& options_;
    std::ofstream file_;
    std::string pending_;
    std::uint64_t lines_ = 0, bad_ = 0;
};

/// The stretches of one municipality, which the office orders by section and not by street.
class SectionOrder {
public:
    void add(const Street& street) {
        for (const Side& side : street.sides) {
            StretchText text;
            text.place = street.place->code;
            text.section = side.section;
            text.unit = street.unit;
            (street.isPseudo ? text.pseudo : text.street) = street.key;
            (street.isPseudo ? text.pseudoName : text.streetName) = street.name;
            text.postalCode = side.postalCode;
            text.numbering = side.numbering;
            text.first = side.first;
            text.last = side.last;
            text.firstLetter = side.firstLetter;
            text.lastLetter = side.lastLetter;
            text.entity = street.entity;
            text.nucleus = street.unit % 100 == 99 ? "*DISEMINADO*" : street.entity;
            lines_.emplace_back(side.section, lineOf(text));
        }
    }
    void writeTo(LineFile& file) {
        std::ranges::stable_sort(lines_, {}, &std::pair<std::uint32_t, std::string>::first);
        for (auto& [section, line] : lines_) {
            file.add(std::move(line));
        }
        lines_.clear();
    }

private:
    std::vector<std::pair<std::uint32_t, std::string>> lines_;
};

std::string writeMunicipalities(const std::string& path, const std::vector<Place>& places) {
    std::ofstream file(path, std::ios::binary);
    file << "CPRO,CMUN,NOMBRE\n";
    for (const Place& place : places) {
        const std::string code = std::to_string(100000 + place.code).substr(1);
        file << code.substr(0, 2) << ',' << code.substr(2) << ",\""
             << dbase::CodePage::windows1252().toUtf8(place.name) << "\"\n";
    }
    return path;
}

} // namespace

std::vector<Place> realPlaces(const std::string& folder) {
    const auto read = [&](const std::string& name, const auto& use) {
        loading::CsvReader csv(loading::fileSource(folder + '/' + name), name);
        static_cast<void>(csv.next()); // the names of the columns
        while (csv.next()) {
            use(csv.fields());
        }
    };
    std::map<std::uint32_t, Place> places;
    read("municipios.csv", [&](const auto& fields) {
        Place& place = places[static_cast<std::uint32_t>(std::stoul(std::string(fields[0].text)))];
        place.code = static_cast<std::uint32_t>(std::stoul(std::string(fields[0].text)));
        const dbase::CodePage& page = dbase::CodePage::windows1252();
        place.name = page.fromUtf8(fields[4].text).value_or(std::string());
        std::ranges::transform(place.name, place.name.begin(), [&](char letter) {
            return static_cast<char>(page.upper(static_cast<unsigned char>(letter)));
        });
    });
    read("codigos_postales.csv", [&](const auto& fields) {
        const auto found = places.find(static_cast<std::uint32_t>(std::stoul(std::string(fields[1].text))));
        if (found != places.end()) {
            found->second.postalCodes.push_back(
                static_cast<std::uint32_t>(std::stoul(std::string(fields[0].text))));
        }
    });
    std::vector<Place> result;
    for (auto& [code, place] : places) {
        if (!place.postalCodes.empty()) {
            result.push_back(std::move(place));
        }
    }
    return result;
}

Files writeEdition(const std::string& folder, const std::vector<Place>& places, const Options& options) {
    const std::string date = options.repeatsName ? ".D250630.G250702" : ".D221231.G230306";
    LineFile stretches(folder + "/TRAM" + date, options), streets(folder + "/VIAS" + date, options);
    LineFile pseudo(folder + "/PSEU" + date, options), units(folder + "/UP" + date, options);
    SectionOrder order;
    std::map<std::uint32_t, std::string> entities; // of the municipality at hand
    const Place* place = nullptr;
    const auto finishPlace = [&] {
        order.writeTo(stretches);
        for (const auto& [unit, entity] : std::exchange(entities, {})) {
            units.add(
                unitLine(place->code, unit, place->name, entity, unit % 100 == 99 ? "*DISEMINADO*" : entity));
        }
    };
    forEachStreet(places, options, [&](const Street& street) {
        if (place != nullptr && place != street.place) {
            finishPlace();
        }
        place = street.place;
        entities[street.unit] = street.entity;
        order.add(street);
        if (street.isPseudo) {
            pseudo.add(pseudoLine(place->code, street.key, street.name, options.repeatsName));
        } else if (street.isListed) {
            streets.add(streetLine(place->code, street.key, street.type, street.name, options.repeatsName));
        }
    });
    if (place != nullptr) {
        finishPlace();
    }
    Files files;
    files.stretches = stretches.finish();
    files.streets = streets.finish();
    files.pseudoStreets = pseudo.finish();
    files.units = units.finish();
    files.municipalities = writeMunicipalities(folder + "/municipios.csv", places);
    files.stretchLines = stretches.lines();
    files.streetLines = streets.lines();
    files.badLines = stretches.bad();
    return files;
}

} // namespace edition
