// The host's province and municipality into which streets go.
#pragma once

#include <QString>
#include <functional>
#include <string>

#include "import/StreetSaving.h"
#include "import/StreetSource.h"

class QComboBox;

namespace ambrel {

class ImportMessages;

/// Index of the first item with this text, letter case ignored; -1 when there is none.
[[nodiscard]] int Indice(const QComboBox& combo, const QString& text);

/// Two lists, of the host's provinces and of the chosen one's municipalities. Errors: dbase::Error of a table
/// that cannot be read.
class HostPlaceChoice {
public:
    /// The combos must outlive it. `onLeave`: called when the province is left, by the user or because it was
    /// chosen here; may be empty.
    HostPlaceChoice(std::string database, ImportMessages& messages, QComboBox& provinces,
                    QComboBox& municipalities, std::function<void()> onLeave = {});

    void CargaProvinciasAmbrel();
    /// Loads the municipalities of the chosen province; asks for one when none is chosen.
    void CBProvinciasAmbrelExit();
    void LiberaProvinciasAmbrel();
    void LiberaMunicipiosAmbrel();

    /// Nothing is chosen any more.
    void clear();
    void clearProvince();
    /// Chooses both by what a source calls them.
    void choose(const HostPlaceName& place);
    /// The same for an answer filed by the names of the service, with the article of the municipality where
    /// the host has it. A province that is chosen already stays. The name becomes the one that was looked for
    /// last; false when no municipality was found.
    [[nodiscard]] bool chooseForAnswer(const QString& province, QString& municipality);
    /// Has the user choose from the host's list of municipalities, which begins at these names.
    void ask(const QString& province, const QString& municipality);

    [[nodiscard]] bool isChosen() const;
    [[nodiscard]] QString municipalityName() const;
    [[nodiscard]] HostMunicipality municipality() const;

private:
    void loadMunicipalities();
    void chooseMunicipality(const QString& name);
    [[nodiscard]] int provinceIndex(const HostPlaceName& place) const;

    std::string database_;
    ImportMessages& messages_;
    QComboBox& provinces_;
    QComboBox& municipalities_;
    std::function<void()> onLeave_;
};

} // namespace ambrel
