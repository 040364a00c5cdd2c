// An edition of the official directory, read from its files and made into rows.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "directory/EditionFiles.h"
#include "directory/FileReading.h"
#include "directory/LoadingProgress.h"
#include "directory/PlaceNames.h"
#include "directory/StreetIndex.h"
#include "directory/StreetKeys.h"
#include "directory/StreetTypeCodes.h"
#include "directory/StretchJoining.h"

namespace ambrel::directory {

/// A row of POSTAL and where it comes from. Views live as long as the call that brings it.
struct StreetRow {
    std::uint32_t key = 0;
    OfficialKey official;
    std::string_view type, name, municipality;
    const JoinedStretch* stretch = nullptr;
    bool isNameShortened = false;
};

class Edition {
public:
    /// Reads all files. Errors: loading::Failure if one cannot be read, is of another kind, or has more than
    /// one bad line in a hundred.
    explicit Edition(const EditionFiles& files, const LoadingProgress& progress = {});

    /// The date to which it refers, AAAA-MM-DD; empty if the names of its files do not say it.
    [[nodiscard]] const std::string& date() const { return date_; }
    [[nodiscard]] const EditionNotes& notes() const { return notes_; }
    [[nodiscard]] PlaceNames& places() { return places_; }
    /// Visits the rows, in the order of their municipalities and streets.
    void forEachRow(RangeOpening opening, StreetTypeCodes& types, StreetKeys& keys,
                    const std::function<void(const StreetRow&)>& use);

private:
    struct Stored {
        StreetId id;
        ObservedStretch stretch;
    };
    void readFile(const std::string& path, FileKind kind,
                  const std::function<Refusal(const FixedLine&, const Layout&, std::uint64_t)>& use);
    [[nodiscard]] bool isWanted(PlaceCode place) const;
    void readStreets(const std::string& path);
    void readPseudoStreets(const std::string& path);
    void readUnits(const std::string& path);
    void readMunicipalities(const std::string& path);
    void readStretches(const std::string& path);
    void take(const StretchLine& line, std::uint64_t number);
    void visitMunicipality(std::span<Stored> stretches, RangeOpening opening, StreetTypeCodes& types,
                           StreetKeys& keys, const std::function<void(const StreetRow&)>& use);

    const EditionFiles files_;
    LoadingProgress progress_;
    std::string date_;
    EditionNotes notes_;
    StreetIndex streets_, unlisted_; // the second from the stretches alone
    PlaceNames places_;
    std::vector<Stored> stretches_;
};

} // namespace ambrel::directory
