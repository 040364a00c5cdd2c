// Fixture of the tests that load editions: small editions line by line, and the tables row by row.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "directory/DirectoryLoading.h"
#include "support/TableTest.h"

namespace ambrel::directory {

/// Writes the lines of an edition. Names in Windows-1252.
class SmallEdition {
public:
    SmallEdition& street(PlaceCode place, std::uint32_t street, const std::string& name,
                         const std::string& type = "CALLE");
    /// Observed numbers of one side; none if both are 0.
    SmallEdition& stretch(PlaceCode place, std::uint32_t street, std::uint32_t code, std::uint32_t first,
                          std::uint32_t last, std::uint32_t unit = 101, const std::string& streetName = {});
    SmallEdition& pseudo(PlaceCode place, std::uint32_t pseudo, std::uint32_t code, const std::string& name);
    SmallEdition& unit(PlaceCode place, std::uint32_t unit, const std::string& municipality,
                       const std::string& entity);
    /// `date`: YYMMDD.
    [[nodiscard]] EditionFiles write(const TemporaryFolder& folder, const std::string& date) const;

private:
    std::string stretches_, streets_, pseudo_, units_;
};

using Lines = std::vector<std::string>;

/// Two streets of Abajas (09001): one with two codes, and one with one. A later edition may change the first
/// one's name and second code.
[[nodiscard]] SmallEdition firstEdition(const std::string& name = "MAYOR", std::uint32_t secondCode = 9002);
/// Their rows.
extern const Lines firstStreets;

class DirectoryTest : public test::TableTest {
protected:
    DirectoryTest();

    /// What a load came to.
    struct Outcome {
        LoadSummary summary;
        std::vector<std::string> changes, conflicts; // a line each
    };
    Outcome store(const EditionFiles& files, const std::string& undoFile = {},
                  RangeOpening opening = RangeOpening::None);
    Outcome simulate(const EditionFiles& files);
    Outcome store(const SmallEdition& edition, const std::string& date = "250630",
                  const std::string& undoFile = {});
    Outcome simulate(const SmallEdition& edition, const std::string& date = "250630");

    /// Stores an edition after another one, once it has been tried with the same outcome.
    Outcome storeNext(const SmallEdition& edition, const std::string& undoFile = {});

    /// "09000001 CL MAYOR 3-9 2-8 01118 09109 ABAJAS" for each row, in the order of their keys.
    [[nodiscard]] static std::vector<std::string> streets();
    /// "09109 ABAJAS 01118 S" for each row, with " E" after entities.
    [[nodiscard]] static std::vector<std::string> places();
    /// "09000001 2025-06-30 09109V00001011180000" for each row.
    [[nodiscard]] static std::vector<std::string> provenance();
    /// All of the three tables.
    [[nodiscard]] static std::vector<std::string> everything();

    // --- What users do. `key`: CODIGO1 of a row that exists.
    static void set(const std::string& key, const std::string& column, const std::string& value);
    static void erase(const std::string& key);
    /// A row of POSTAL: the numbers 1-9 of a user's CL DEL MOLINO in Abajas, 99000000 with the code 09001,
    /// but for what is given.
    static void addStreet(const std::map<std::string, std::string>& values);
    /// The first row of MUNICIPI with a name.
    static void setPlace(const std::string& name, const std::string& column, const std::string& value);
    /// A row of MUNICIPI: Abajas with the code 09001, one of several, but for what is given.
    static void addPlace(const std::map<std::string, std::string>& values);
    /// As "ambcp deshacer"; the rows that are left alone.
    static std::vector<std::string> undo(const std::string& undoFile);

    TemporaryFolder official;
};

} // namespace ambrel::directory
