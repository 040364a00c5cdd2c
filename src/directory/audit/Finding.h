// What is wrong, or worth a look, in the rows of MUNICIPI and POSTAL.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "AmbrelExport.h"
#include "dbase/dbf/schema.h"

namespace ambrel::directory {

/// Grave: a search goes wrong or finds nothing. Note: usual in sound tables.
enum class Severity { Grave, Warning, Note };

/// "GRAVE", "AVISO" or "NOTA".
[[nodiscard]] AMBREL_EXPORT std::string_view severityName(Severity severity);

/// What a finding is about; classMeaning() says it in a sentence.
enum class FindingClass {
    ReversedRange,
    WrongParity,
    NoNumbers,
    Overlap,
    Gap,
    RepeatedRow,
    RepeatedKey,
    BadKey,
    NoPostalCode,
    ForeignPostalCode,
    WrongProvince,
    NoMunicipality,
    UnknownMunicipality,
    UnknownType,
    NoName,
    SmallLetters,
    NeedlessBlanks,
    BrokenLetters,
    OpenBracket,
    BlankCapital,
    ForeignCapital,
    CancelledCard,
    NoStreets,
    HiddenStreets,
    SingleCodeMark,
    FullBlock
};
/// The number of classes.
inline constexpr std::size_t findingClassCount = 26;

/// As files and orders have it, such as "RANGO_INVERTIDO".
[[nodiscard]] AMBREL_EXPORT std::string_view className(FindingClass kind);
/// The class of such a name, letter case ignored; null if there is none.
[[nodiscard]] AMBREL_EXPORT std::optional<FindingClass> findingClassNamed(std::string_view name);
/// For people, in UTF-8: "Tramo al revés"; a sentence that says what it is; and one that says what to do.
[[nodiscard]] AMBREL_EXPORT std::string_view classTitle(FindingClass kind);
[[nodiscard]] AMBREL_EXPORT std::string_view classMeaning(FindingClass kind);
[[nodiscard]] AMBREL_EXPORT std::string_view classAdvice(FindingClass kind);
/// Unless the case says otherwise.
[[nodiscard]] AMBREL_EXPORT Severity usualSeverity(FindingClass kind);
/// Whether findings of the class have exactly one right repair.
[[nodiscard]] AMBREL_EXPORT bool isRepairable(FindingClass kind);

/// The tables that are audited.
enum class AuditedTable { Municipalities, Streets };
/// "MUNICIPI" or "POSTAL".
[[nodiscard]] AMBREL_EXPORT std::string_view tableName(AuditedTable table);

/// What is wrong with one row, or with a table as a whole. Texts in UTF-8.
struct Finding {
    FindingClass kind = {};
    Severity severity = {};
    AuditedTable table = {};
    dbase::RecordNumber record = 0; // 0: of the table as a whole
    std::string key = {};           // CODIGO1, or COD_INE and postal code
    std::string text = {};
    std::string proposal = {}; // "VIA=MAYOR"; empty if there is none
    std::string province = {}; // two digits; empty if not known
};

/// Takes each finding of an audit.
using FindingSink = std::function<void(const Finding&)>;

} // namespace ambrel::directory
