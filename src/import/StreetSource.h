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

/// The contents of one of the dialog's lists.
struct PlaceList {
    bool isWhole = false; // false: failed, and the source has reported what it knows to the user
    QStringList names = {};
};

/// Streets as found by a source.
struct FoundStreets {
    bool isWhole = false; // as in PlaceList
    std::vector<ImportedStreet> streets = {};
    std::optional<int> count = {}; // as counted by the source
    bool countsRows = false;       // the number of rows in the list is the count
};

/// The host's place to which streets probably belong.
struct HostPlaceName {
    QString province = {};
    std::optional<int> provinceCode = {}; // in place of the name
    QString municipality = {};
};

/// Called by the dialog with the user's choices in its lists.
class StreetSource {
public:
    /// What must be chosen before streets can be requested.
    enum class Needs {
        Place,             // a name of the first list
        PlaceMunicipality, // and one of the second, which offers the municipalities of that place
        WholeProvince,     // a name of the first list; its municipalities are fetched one by one
    };

    /// A source's name, needs and kind of streets.
    struct Description {
        const char* option; // object name of its radio button
        QString caption;    // of that button; begins with the number of the option
        QString placeLabel; // what the first list offers
        Needs needs;
        StreetCodes codes;
        QString listing = {};       // progress text while places() works; empty if it takes no time
        QString nothingListed = {}; // shown if the user leaves the first list empty; may be empty
        QString incomplete;         // shown if streets are requested while a name is missing
    };

    virtual ~StreetSource() = default;

    [[nodiscard]] virtual const Description& description() const = 0;
    /// The contents of the first list.
    [[nodiscard]] virtual PlaceList places() = 0;
    /// The municipalities of a place. Not called for a source that needs only a place.
    [[nodiscard]] virtual PlaceList municipalities(const QString& place);
    /// The streets of a municipality, or of a place if the source needs nothing else. Not called for a source
    /// of whole provinces.
    [[nodiscard]] virtual FoundStreets find(const QString& place, const QString& municipality);
    /// The target for the streets of that place and municipality, unless the user chooses another one.
    [[nodiscard]] virtual HostPlaceName hostPlace(const QString& place, const QString& municipality) const;
    /// Fetches the streets of one municipality and files them in POSTALES, from where a province is saved.
    /// Called only for a source of whole provinces.
    [[nodiscard]] virtual MunicipalityEnd file(const QString& province, const QString& municipality);
};

} // namespace ambrel
