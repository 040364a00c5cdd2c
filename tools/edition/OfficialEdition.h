// A made-up edition of the official street directory, of any size: always the same for the same options, with
// everything that makes the real one difficult.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace edition {

/// A municipality. Names in Windows-1252, in capitals.
struct Place {
    std::uint32_t code = 0; // 28079
    std::string name;
    std::vector<std::uint32_t> postalCodes; // at least one
};

/// Invented ones, spread over all provinces; every 40th has a code of the next province as well.
[[nodiscard]] std::vector<Place> inventedPlaces(std::size_t count);
/// Those of a folder with real data, from municipios.csv and codigos_postales.csv. Errors: loading::Failure.
[[nodiscard]] std::vector<Place> realPlaces(const std::string& folder);

struct Options {
    std::uint64_t stretches = 2000; // about as many
    bool repeatsName = true;        // in the layouts since July 2025
    bool hasWholeSides = false;     // 1-9999 and 2-9998 instead of the observed numbers, as until 2020
    bool cutsBlanks = false;        // at the ends of lines
    bool hasMoreColumns = false;    // after those of the layout
    unsigned badEvery = 0;          // one bad line among so many; 0: none
    std::uint64_t seed = 1;
};

/// A stretch of one side. Numbers are observed ones: the street has others in between.
struct Side {
    char numbering = '1'; // 0 none, 1 odd, 2 even
    std::uint32_t first = 0, last = 0;
    char firstLetter = ' ', lastLetter = ' ';
    std::uint32_t postalCode = 0;
    std::uint32_t section = 1;
};

struct Street {
    const Place* place = nullptr;
    std::uint32_t unit = 0, key = 0;
    bool isPseudo = false;
    bool isListed = true; // in VIAS
    std::string type, name, entity;
    std::vector<Side> sides; // may be empty
};

/// Visits all streets of an edition, municipality by municipality.
void forEachStreet(const std::vector<Place>& places, const Options& options,
                   const std::function<void(const Street&)>& visit);

/// The files of an edition.
struct Files {
    std::string stretches, streets, pseudoStreets, units, municipalities;
    std::uint64_t stretchLines = 0, streetLines = 0, badLines = 0;
};

/// Writes an edition into a folder that exists. Errors: std::runtime_error.
Files writeEdition(const std::string& folder, const std::vector<Place>& places, const Options& options);

} // namespace edition
