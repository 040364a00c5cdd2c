// Test fixture of the lookups: the postal tables, scripted boxes and dialogs, and the state that every
// routine must leave.
#pragma once

#include <QDialog>
#include <string>
#include <vector>

#include "data/PostalTables.h"
#include "support/ModalScript.h"
#include "support/ScriptedMessages.h"

namespace lookup_tests {

using postal_tests::MunicipalityRow;
using postal_tests::ProvinceRow;

struct AlternativeRow {
    std::string provCod, poblCod, poblLite;
};

/// Boxes and dialogs that a test does not expect fail it. After each test the globals must be empty and no
/// dialog may be left.
class LookupTables : public postal_tests::PostalTables {
protected:
    void TearDown() override;

    /// The municipality number is the end of the INE code.
    void addNumberedMunicipalities(const std::vector<MunicipalityRow>& rows);
    void addAlternatives(const std::vector<AlternativeRow>& rows) const;
    void removeTable(const std::string& name) const;

    ambrel::test::ScriptedMessages messages;
    ambrel::test::ModalScript dialogs;
};

// What a user does in a dialog.
void type(const QDialog& dialog, const char* edit, const QString& text);
void accept(const QDialog& dialog);
void leave(const QDialog& dialog);
void escape(QDialog& dialog);

} // namespace lookup_tests
