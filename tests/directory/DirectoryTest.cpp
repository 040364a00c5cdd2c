// Loads small editions, and reads tables as text.
#include "directory/DirectoryTest.h"

#include <algorithm>

#include "data/TableDefinitions.h"
#include "dbase/dataset/dataset.h"
#include "dbase/dataset/row_walk.h"
#include "directory/LeadingZeros.h"
#include "loading/undo.h"
#include "loading/undo_reader.h"
#include "tools/edition/OfficialLines.h"

namespace ambrel::directory {
namespace {

std::string line(const std::string& text) { return text + "\r\n"; }

std::string text(dbase::Dataset& table, const char* column) { return table.field(column).text(); }

std::string range(dbase::Dataset& table, const std::string& side) {
    return ' ' + text(table, (side + "_INI").c_str()) + '-' + text(table, (side + "_FIN").c_str());
}

/// A line for each row of a table.
template<typename Text>
Lines rowsOf(const char* name, const char* tag, const Text& rowText) {
    dbase::Dataset table("DB", name, tag);
    table.open();
    Lines lines;
    dbase::forEachRow(table, [&] { lines.push_back(rowText(table)); });
    return lines;
}

std::string boundsText(const Bounds& bounds) {
    std::string text;
    for (const std::uint16_t bound : bounds) {
        text += ' ' + std::to_string(bound);
    }
    return text;
}

const char* nameOf(ConflictKind kind) {
    switch (kind) {
    case ConflictKind::ChangedByHand:
        return "changed";
    case ConflictKind::DeletedByHand:
        return "deleted";
    case ConflictKind::OwnStreet:
        return "own street";
    case ConflictKind::OwnMunicipality:
        return "own municipality";
    }
    return "";
}

std::string textOf(const DirectoryChange& change) {
    const char* const signs[] = {"+", "-", "~"};
    std::string text = signs[static_cast<int>(change.kind)];
    text += digits(change.key, 8) + ' ' + std::string(change.name.empty() ? change.nameBefore : change.name);
    if (change.kind == ChangeKind::Changes) {
        text += std::string(change.isRenamed ? " name" : "") + (change.hasOtherCode ? " code" : "") +
                (change.hasOtherRange ? " range" : "");
        return text;
    }
    const bool goes = change.kind == ChangeKind::Goes;
    return text + ' ' + std::string(goes ? change.codeBefore : change.code) +
           boundsText(goes ? change.boundsBefore : change.bounds);
}

using Values = std::map<std::string, std::string>; // by column

void setValues(dbase::Dataset& table, const Values& values) {
    for (const auto& [column, value] : values) {
        table.field(column).setText(value);
    }
    table.post();
}

void addRow(const char* name, const Values& values) {
    dbase::Dataset table("DB", name);
    table.open();
    table.append();
    setValues(table, values);
}

/// On the row of POSTAL with a key.
template<typename Use>
void onStreet(const std::string& key, const Use& use) {
    dbase::Dataset table("DB", "POSTAL", "CODIGO1");
    table.open();
    ASSERT_TRUE(table.seek({{"CODIGO1", key}}, dbase::SeekMode::Exact)) << key;
    use(table);
}

} // namespace

SmallEdition firstEdition(const std::string& name, std::uint32_t secondCode) {
    SmallEdition edition;
    edition.unit(9001, 101, "ABAJAS", "ABAJAS")
        .street(9001, 1, name)
        .street(9001, 2, "REAL", "AVDA")
        .stretch(9001, 1, 9001, 1, 9)
        .stretch(9001, 1, 9001, 2, 8)
        .stretch(9001, 1, secondCode, 11, 19)
        .stretch(9001, 2, 9002, 1, 5);
    return edition;
}

const Lines firstStreets = {"09000001 CL MAYOR 1-9 2-8 09001 09001 ABAJAS",
                            "09000002 CL MAYOR 11-19 0-0 09002 09001 ABAJAS",
                            "09000003 AV REAL 1-5 0-0 09002 09001 ABAJAS"};

SmallEdition& SmallEdition::street(PlaceCode place, std::uint32_t street, const std::string& name,
                                   const std::string& type) {
    streets_ += line(edition::streetLine(place, street, type, name));
    return *this;
}

SmallEdition& SmallEdition::stretch(PlaceCode place, std::uint32_t street, std::uint32_t code,
                                    std::uint32_t first, std::uint32_t last, std::uint32_t unit,
                                    const std::string& streetName) {
    stretches_ += line(edition::lineOf({.place = place,
                                        .unit = unit,
                                        .street = street,
                                        .postalCode = code,
                                        .numbering = first == 0       ? '0'
                                                     : first % 2 == 1 ? '1'
                                                                      : '2',
                                        .first = first,
                                        .last = last,
                                        .streetName = streetName}));
    return *this;
}

SmallEdition& SmallEdition::pseudo(PlaceCode place, std::uint32_t pseudo, std::uint32_t code,
                                   const std::string& name) {
    pseudo_ += line(edition::pseudoLine(place, pseudo, name));
    stretches_ += line(edition::lineOf(
        {.place = place, .pseudo = pseudo, .postalCode = code, .numbering = '0', .pseudoName = name}));
    return *this;
}

SmallEdition& SmallEdition::unit(PlaceCode place, std::uint32_t unit, const std::string& municipality,
                                 const std::string& entity) {
    units_ += line(edition::unitLine(place, unit, municipality, entity, entity));
    return *this;
}

EditionFiles SmallEdition::write(const TemporaryFolder& folder, const std::string& date) const {
    const auto file = [&](const char* name, const std::string& content) {
        return content.empty() ? std::string()
                               : folder.write(std::string(name) + ".D" + date + ".G250702", content);
    };
    return {.stretches = file("TRAM", stretches_),
            .streets = file("VIAS", streets_),
            .pseudoStreets = file("PSEU", pseudo_),
            .units = file("UP", units_),
            .municipalities = {},
            .provinces = {}};
}

DirectoryTest::DirectoryTest() {
    createTable(municipalityTable(), {});
    createTable(streetTable(), {});
    createTable(streetTypeTable(), {"CODIGO", "NOMBRE"}, {{"CL", "CALLE"}, {"AV", "AVENIDA"}});
}

DirectoryTest::Outcome DirectoryTest::store(const EditionFiles& files, const std::string& undoFile,
                                            RangeOpening opening) {
    Outcome outcome;
    DirectoryLoading loading("DB", folder.path());
    loading.begin();
    loading.take(std::make_unique<Edition>(files));
    outcome.summary = loading.store(
        opening, undoFile,
        {.change = [&](const DirectoryChange& change) { outcome.changes.push_back(textOf(change)); },
         .conflict =
             [&](const DirectoryConflict& one) {
                 outcome.conflicts.push_back(std::string(nameOf(one.kind)) + ' ' + digits(one.key, 8) + ": " +
                                             std::string(one.ours) + " | " + std::string(one.official));
             }});
    return outcome;
}

DirectoryTest::Outcome DirectoryTest::simulate(const EditionFiles& files) {
    Outcome outcome;
    DirectoryLoading loading("DB", folder.path());
    loading.take(std::make_unique<Edition>(files));
    outcome.summary = loading.simulate(
        RangeOpening::None,
        {.change = [&](const DirectoryChange& change) { outcome.changes.push_back(textOf(change)); },
         .conflict =
             [&](const DirectoryConflict& one) {
                 outcome.conflicts.push_back(std::string(nameOf(one.kind)) + ' ' + digits(one.key, 8) + ": " +
                                             std::string(one.ours) + " | " + std::string(one.official));
             }});
    return outcome;
}

DirectoryTest::Outcome DirectoryTest::store(const SmallEdition& edition, const std::string& date,
                                            const std::string& undoFile) {
    return store(edition.write(official, date), undoFile);
}

DirectoryTest::Outcome DirectoryTest::simulate(const SmallEdition& edition, const std::string& date) {
    return simulate(edition.write(official, date));
}

DirectoryTest::Outcome DirectoryTest::storeNext(const SmallEdition& edition, const std::string& undoFile) {
    const Lines before = everything();
    const Outcome tried = simulate(edition, "251231");
    EXPECT_EQ(everything(), before) << "a trial changes nothing";
    Outcome stored = store(edition, "251231", undoFile);
    EXPECT_EQ(stored.changes, tried.changes);
    EXPECT_EQ(stored.conflicts, tried.conflicts);
    EXPECT_EQ(stored.summary.kept, tried.summary.kept);
    return stored;
}

Lines DirectoryTest::streets() {
    return rowsOf("POSTAL", "CODIGO1", [](dbase::Dataset& row) {
        return text(row, "CODIGO1") + ' ' + text(row, "TIPO_VIA") + ' ' + text(row, "VIA") +
               range(row, "IMPAR") + range(row, "PAR") + ' ' + text(row, "CODPOSTAL") + ' ' +
               text(row, "COD_INE") + ' ' + text(row, "MUNICIPI");
    });
}

Lines DirectoryTest::places() {
    return rowsOf("MUNICIPI", "COD_INE", [](dbase::Dataset& row) {
        return text(row, "COD_INE") + ' ' + text(row, "NOMBRE") + ' ' + text(row, "CODPOSTAL") + ' ' +
               text(row, "UNICO") + (text(row, "ENT_MENOR") == "True" ? " E" : "");
    });
}

Lines DirectoryTest::provenance() {
    return rowsOf("PROCEDEN", "CODIGO1", [](dbase::Dataset& row) {
        return text(row, "CODIGO1") + ' ' + text(row, "EDICION") + ' ' + text(row, "CLAVE");
    });
}

Lines DirectoryTest::everything() {
    Lines lines = streets();
    std::ranges::move(places(), std::back_inserter(lines));
    for (const char* const column : {"CLAVE", "EDICION", "HUELLA", "LINEA", "ABIERTO", "NOMBRE"}) {
        std::ranges::move(rowsOf("PROCEDEN", "CODIGO1",
                                 [&](dbase::Dataset& row) {
                                     return text(row, "CODIGO1") + text(row, "CLAVE") + ' ' +
                                            text(row, column);
                                 }),
                          std::back_inserter(lines));
    }
    std::ranges::sort(lines);
    return lines;
}

void DirectoryTest::set(const std::string& key, const std::string& column, const std::string& value) {
    onStreet(key, [&](dbase::Dataset& table) {
        table.edit();
        setValues(table, {{column, value}});
    });
}

void DirectoryTest::erase(const std::string& key) {
    onStreet(key, [](dbase::Dataset& table) { table.erase(); });
}

void DirectoryTest::addStreet(const std::map<std::string, std::string>& values) {
    Values all = values;
    all.merge(Values{{"CODIGO1", "99000000"},
                     {"PROVINCIA", "09"},
                     {"CAPITAL", "9"},
                     {"TIPO_VIA", "CL"},
                     {"VIA", "DEL MOLINO"},
                     {"IMPAR_INI", "1"},
                     {"IMPAR_FIN", "9"},
                     {"PAR_INI", "0"},
                     {"PAR_FIN", "0"},
                     {"CODPOSTAL", "09001"},
                     {"MUNICIPI", "ABAJAS"},
                     {"COD_INE", "09001"}});
    addRow("POSTAL", all);
}

void DirectoryTest::setPlace(const std::string& name, const std::string& column, const std::string& value) {
    dbase::Dataset table("DB", "MUNICIPI", "NOMBRE");
    table.open();
    ASSERT_TRUE(table.seek({{"NOMBRE", name}}, dbase::SeekMode::Exact)) << name;
    table.edit();
    setValues(table, {{column, value}});
}

void DirectoryTest::addPlace(const std::map<std::string, std::string>& values) {
    Values all = values;
    all.merge(Values{{"COD_INE", "09001"},
                     {"CODPOSTAL", "09001"},
                     {"UNICO", "N"},
                     {"CAPITAL", "9"},
                     {"NOMBRE", "ABAJAS"},
                     {"COD_PROV", "09"},
                     {"COD_MUN", "0001"},
                     {"ENT_MENOR", "False"}});
    addRow("MUNICIPI", all);
}

Lines DirectoryTest::undo(const std::string& undoFile) {
    Lines left;
    const loading::UndoReader file(undoFile);
    EXPECT_TRUE(file.isEnded());
    EXPECT_TRUE(file.damagedLines().empty());
    static_cast<void>(loading::undo(file, {}, [&](const loading::LeftAlone& one) {
        left.push_back(one.column + ' ' + one.now + ": " + one.reason);
    }));
    return left;
}

} // namespace ambrel::directory
