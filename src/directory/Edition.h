// An edition of the official directory, read from its files and made into rows.
#pragma once

#include <array>
#include <functional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "directory/EditionFiles.h"
#include "directory/FileReading.h"
#include "directory/LoadingProgress.h"
#include "directory/PlaceNames.h"
#include "directory/StreetIndex.h"
#include "directory/StreetTypeCodes.h"
#include "directory/StretchJoining.h"

namespace ambrel::directory {

/// A street with its rows of POSTAL. Views live as long as the call that brings it. Where nothing names the
/// street or its municipality, it has neither name nor rows.
struct OfficialStreet {
    StreetId id = 0;
    std::string_view type = {}, name = {}, municipality = {};
    std::string_view wholeName = {}; // where the name had to be shortened; else empty
    bool isListed = false;           // in its file; else it has no type, and the short name of its stretches
    std::span<const JoinedStretch> rows = {};
};
using StreetUse = std::function<void(const OfficialStreet&)>;

class Edition {
public:
    /// Reads all files. Errors: loading::Failure if one cannot be read, is of another kind, or has more than
    /// one bad line in a hundred.
    explicit Edition(const EditionFiles& files, const LoadingProgress& progress = {});

    /// The date to which it refers, AAAA-MM-DD; empty if the names of its files do not say it.
    [[nodiscard]] const std::string& date() const { return date_; }
    [[nodiscard]] const EditionNotes& notes() const { return notes_; }
    [[nodiscard]] bool isTakenAsWhole() const { return files_.areTakenAsWhole; }
    [[nodiscard]] PlaceNames& places() { return places_; }
    /// Whether its files would have a street or municipality if there still were one: they may be those of a
    /// few provinces, or lack the pseudo streets.
    [[nodiscard]] bool speaksOf(StreetId id) const;
    [[nodiscard]] bool speaksOf(PlaceCode place) const;
    /// Whether a file has the names of population units in full.
    [[nodiscard]] bool hasUnits() const { return !files_.units.empty(); }
    /// Visits the streets that have stretches, in the order of their numbers. Another thread joins their
    /// stretches meanwhile: `use` must leave places, notes and types alone.
    void forEachStreet(RangeOpening opening, StreetTypeCodes& types, const StreetUse& use);
    /// Gives back their memory, which takes a while. Date, notes and places stay.
    void forgetStreets();

private:
    struct Stored {
        StreetId id;
        ObservedStretch stretch;
    };
    /// Stretches of one municipality that follow each other.
    struct Piece {
        PlaceCode place;
        std::size_t first, size;
    };
    [[nodiscard]] bool isWanted(PlaceCode place) const;
    /// `use`: receives the records of wanted municipalities with their line numbers.
    template<class Record, typename Use>
    void readFile(const std::string& path, FileKind kind, const Use& use);
    [[nodiscard]] OfficialFile beginFile(const std::string& path, FileKind kind);
    void endFile(const OfficialFile& file, const ReadCounts& counts);
    void readStreets(const std::string& path);
    void readPseudoStreets(const std::string& path);
    void readUnits(const std::string& path);
    void readMunicipalities(const std::string& path);
    void readStretches(const std::string& path);
    void take(const StretchLine& line, std::uint64_t number);
    void requireListed() const;
    void noteOtherDates();
    struct PlaceStreets;
    void joinMunicipality(std::span<Stored> stretches, RangeOpening opening, StreetTypeCodes& types,
                          PlaceStreets& result);
    void passUnnamed(std::span<const Stored> stretches, PlaceStreets& result);
    [[nodiscard]] std::span<Stored> stretchesOf(std::span<const Piece> pieces, PlaceStreets& result);
    [[nodiscard]] bool joinNext(std::span<const Piece>& pieces, RangeOpening opening, StreetTypeCodes& types,
                                PlaceStreets& result);

    const EditionFiles files_;
    LoadingProgress progress_;
    std::string date_;
    std::vector<std::pair<std::string, std::string>> dates_; // of each file, after its name
    EditionNotes notes_;
    StreetIndex streets_, unlisted_; // the second from the stretches alone
    PlaceNames places_;
    std::vector<Stored> stretches_;
    std::vector<Stored> sorting_;            // room for some of them
    std::vector<Piece> pieces_;              // of them, by municipality once all are read
    std::uint64_t unlistedCount_ = 0;        // of them
    bool isListed_ = false;                  // the street of the last of them
    std::array<bool, 100> hasProvince_ = {}; // in the file of stretches
};

} // namespace ambrel::directory
