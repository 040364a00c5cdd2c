// A source of streets: one option of the import dialog. A new one is a file with such a class, and its line
// in StreetSources.cpp.
#pragma once

#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

#include "import/ImportedStreet.h"
#include "import/ProvinceRun.h"

namespace ambrel {

/// What a source offers in one of the dialog's lists.
struct PlaceList {
    bool isWhole = false; // false: it failed, and the user has been told what the source knows about it
    QStringList names = {};
};

/// Streets as a source has them.
struct FoundStreets {
    bool isWhole = false; // as in PlaceList
    std::vector<ImportedStreet> streets = {};
    std::optional<int> count = {}; // as the source counts them
    bool countsRows = false;       // the rows of the list are the count
};

/// The host's place that streets probably belong to.
struct HostPlaceName {
    QString province = {};
    std::optional<int> provinceCode = {}; // in place of the name
    QString municipality = {};
};

/// The calls come from the dialog, with what the user chose in its lists.
class StreetSource {
public:
    /// What it needs to be asked for streets.
    enum class Needs {
        Place,             // a name of the first list
        PlaceMunicipality, // and one of the second, which offers the municipalities of that place
        WholeProvince,     // a name of the first list; its municipalities are fetched one after the other
    };

    /// What it is called, what it needs and what its streets have.
    struct Description {
        const char* option; // object name of its radio button
        QString caption;    // of that; begins with the number of the option
        QString placeLabel; // what the first list offers
        Needs needs;
        StreetCodes codes;
        QString listing = {};       // progress text while places() works; empty where it takes no time
        QString nothingListed = {}; // told when the first list is left empty; may be empty
        QString incomplete;         // told when the streets are asked for and a name is missing
    };

    virtual ~StreetSource() = default;

    [[nodiscard]] virtual const Description& description() const = 0;
    /// What the first list offers.
    [[nodiscard]] virtual PlaceList places() = 0;
    /// The municipalities of a place. Not called for a source that needs a place alone.
    [[nodiscard]] virtual PlaceList municipalities(const QString& place);
    /// The streets of a municipality, or of a place where that is all that is needed. Not called for a source
    /// of whole provinces.
    [[nodiscard]] virtual FoundStreets find(const QString& place, const QString& municipality);
    /// Where the streets of that place and municipality go, unless the user chooses otherwise.
    [[nodiscard]] virtual HostPlaceName hostPlace(const QString& place, const QString& municipality) const;
    /// Fetches the streets of one municipality and files them in POSTALES, from where a province is saved.
    /// Called for a source of whole provinces alone.
    [[nodiscard]] virtual MunicipalityEnd file(const QString& province, const QString& municipality);
};

} // namespace ambrel
