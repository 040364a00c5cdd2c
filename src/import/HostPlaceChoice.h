// The choice of the host's province and municipality to save streets into.
#pragma once

#include <QString>
#include <functional>
#include <string>

#include "import/StreetSaving.h"
#include "import/StreetSource.h"

class QComboBox;

namespace ambrel {

class ImportMessages;

/// Index of the first item with this text, letter case ignored; -1 if there is none.
[[nodiscard]] int Indice(const QComboBox& combo, const QString& text);

/// Two lists, of the host's provinces and of the chosen one's municipalities. Errors: dbase::Error of a table
/// that cannot be read.
class HostPlaceChoice {
public:
    /// The combos must outlive it. `onLeave` is called when the user leaves the province or it is chosen
    /// here; may be empty.
    HostPlaceChoice(std::string database, ImportMessages& messages, QComboBox& provinces,
                    QComboBox& municipalities, std::function<void()> onLeave = {});

    void CargaProvinciasAmbrel();
    /// Loads the municipalities of the chosen province; asks for a province if none is chosen.
    void CBProvinciasAmbrelExit();
    void LiberaProvinciasAmbrel();
    void LiberaMunicipiosAmbrel();

    /// Clears both choices.
    void clear();
    void clearProvince();
    /// Chooses both by a source's names.
    void choose(const HostPlaceName& place);
    /// The same for an answer filed under the service's names, with the municipality's article placed as the
    /// host has it. A province already chosen stays. Sets the name to the one last looked up; false if no
    /// municipality was found.
    [[nodiscard]] bool chooseForAnswer(const QString& province, QString& municipality);
    /// Lets the user choose from the host's list of municipalities, starting at these names.
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
