// Stores an edition through the bulk loader.
#include "directory/DirectoryLoading.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "data/TableDefinitions.h"
#include "dbase/dataset/dataset.h"
#include "dbase/dataset/row_walk.h"
#include "dbase/dbf/codec.h"
#include "dbase/system/databases.h"
#include "dbase/system/error.h"
#include "dbase/table/bulk_loader.h"
#include "dbase/table/table_creation.h"
#include "loading/failure.h"

namespace ambrel::directory {
namespace {

using loading::Failure;

/// Digits with leading zeros.
std::string digits(std::uint32_t value, std::size_t width) {
    std::string text = std::to_string(value);
    return text.size() < width ? std::string(width - text.size(), '0') + text : text;
}

/// One record, column by column, whose places are found once.
class RecordWriter {
public:
    RecordWriter(const dbase::Schema& schema, std::initializer_list<const char*> columns)
        : record_(schema.recordLength, ' ') {
        for (const char* const name : columns) {
            const auto position = schema.find(name);
            if (!position) {
                throw Failure(std::string("la tabla no tiene la columna ") + name);
            }
            columns_.push_back(schema.columns[*position]);
        }
    }
    void text(std::size_t column, std::string_view value) { dbase::encodeText(raw(column), value); }
    void number(std::size_t column, std::int64_t value) {
        static_cast<void>(dbase::encodeInteger(raw(column), value));
    }
    void logical(std::size_t column, bool value) { dbase::encodeLogical(raw(column), value); }
    [[nodiscard]] std::span<const char> record() const { return record_; }

private:
    std::span<char> raw(std::size_t column) {
        return std::span(record_).subspan(columns_[column].offset, columns_[column].width);
    }
    std::vector<char> record_;
    std::vector<dbase::Column> columns_;
};

/// The loader of a table whose rows all come anew.
class TableFilling {
public:
    TableFilling(const std::string& folder, const std::string& name,
                 std::initializer_list<const char*> columns)
        : loader_(*dbase::findTableFile(folder, name), dbase::BulkLoader::Mode::Replace),
          writer(loader_.schema(), columns), name_(name) {}

    void add() { loader_.add(writer.record()); }
    void finish(const LoadingProgress& progress) {
        loader_.finish([&](std::uint64_t done, std::uint64_t total) {
            if (progress && total > 0) {
                progress({name_, done, static_cast<double>(done) / static_cast<double>(total)});
            }
        });
    }

private:
    dbase::BulkLoader loader_;

public:
    RecordWriter writer;

private:
    std::string name_;
};

char openingSign(RangeOpening opening) {
    return opening == RangeOpening::None ? '-' : opening == RangeOpening::Ends ? 'E' : 'H';
}

void addMunicipality(TableFilling& table, const PlaceRow& row) {
    const std::string code = digits(row.place, 5);
    table.writer.text(0, code);
    table.writer.text(1, digits(row.postalCode, 5));
    table.writer.text(2, row.hasOneCode ? singleCodeMark : "N");
    table.writer.text(3, !row.isEntity && isCapital(row.place) ? capitalMark : localityMark);
    table.writer.text(4, row.name);
    table.writer.text(5, std::string_view(code).substr(0, 2));
    table.writer.text(6, '0' + code.substr(2));
    table.writer.logical(7, row.isEntity);
    table.writer.text(8, row.shortPlaceName);
    table.add();
}

void addStreet(TableFilling& table, const StreetRow& row) {
    const std::string code = digits(row.stretch->postalCode, 5);
    table.writer.text(0, digits(row.key, 8));
    table.writer.text(1, std::string_view(code).substr(0, 2));
    table.writer.text(2, isCapital(row.official.place) ? capitalMark : localityMark);
    table.writer.text(3, row.type);
    table.writer.text(4, row.name);
    for (std::size_t i = 0; i < row.stretch->bounds.size(); ++i) {
        table.writer.number(5 + i, row.stretch->bounds[i]);
    }
    table.writer.text(9, code);
    table.writer.text(10, row.municipality);
    table.writer.text(11, digits(row.official.place, 5));
    table.add();
}

void addProvenance(TableFilling& table, const StreetRow& row, const std::string& edition) {
    std::string opened;
    std::ranges::transform(row.stretch->opened, std::back_inserter(opened), openingSign);
    table.writer.text(0, digits(row.key, 8));
    table.writer.text(1, "INE");
    table.writer.text(2, edition);
    table.writer.text(3, row.official.text());
    table.writer.number(4, row.stretch->line);
    table.writer.text(5, opened);
    table.writer.logical(6, row.isNameShortened);
    table.add();
}

void report(const StreetRow& row, const LoadObserver& observer) {
    if (observer.change) {
        const std::string code = digits(row.stretch->postalCode, 5);
        observer.change({.kind = ChangeKind::Comes,
                         .place = row.official.place,
                         .municipality = row.municipality,
                         .key = row.key,
                         .type = row.type,
                         .name = row.name,
                         .code = code,
                         .bounds = row.stretch->bounds});
    }
}

/// Creates PROCEDEN where it is missing, and removes it again unless it is kept.
class NewProvenance {
public:
    explicit NewProvenance(const std::string& folder) {
        const dbase::TableDefinition definition = provenanceTable();
        if (!dbase::findTableFile(folder, definition.name)) {
            claim_.emplace(folder + '/' + definition.name + ".DBF");
            dbase::createTable(*claim_, definition);
            isNew_ = true;
        }
        claim_.reset();
        file_ = *dbase::findTableFile(folder, definition.name);
    }
    ~NewProvenance() {
        if (!isNew_) {
            return;
        }
        try {
            const dbase::TableClaim claim(file_);
            dbase::removeTable(claim);
        } catch (const dbase::Error&) {
            // The error that led here is the one to report; an empty table does no harm.
        }
    }
    NewProvenance(const NewProvenance&) = delete;
    NewProvenance& operator=(const NewProvenance&) = delete;
    void keep() { isNew_ = false; }

private:
    std::optional<dbase::TableClaim> claim_;
    std::string file_;
    bool isNew_ = false;
};

} // namespace

dbase::TableDefinition provenanceTable() {
    const auto character = [](const char* name, std::uint16_t width) {
        return dbase::Column{.name = name, .type = dbase::ColumnType::Character, .width = width};
    };
    return {.name = "PROCEDEN",
            .columns = {character("CODIGO1", 8),
                        character("FUENTE", 3),
                        character("EDICION", 10),
                        character("CLAVE", 20),
                        {.name = "LINEA", .type = dbase::ColumnType::Numeric, .width = 10},
                        character("ABIERTO", 4),
                        {.name = "ABREVIADO", .type = dbase::ColumnType::Logical, .width = 1}},
            .tags = {{.name = "CODIGO1", .expression = "CODIGO1"}}};
}

DirectoryLoading::DirectoryLoading(const std::string& database, const std::string& folder)
    : database_(database), folder_(folder) {
    dbase::Dataset streets(database_, "POSTAL");
    streets.open();
    if (!streets.isEmpty()) {
        throw Failure("POSTAL ya tiene filas, y esta orden sólo llena un callejero vacío. Créelo en otra "
                      "carpeta. No se ha "
                      "cambiado nada.");
    }
    dbase::Dataset types(database_, "TIPO_VIA");
    types.open();
    dbase::forEachRow(types, [&] {
        types_.push_back(
            {types.field("CODIGO").text(), types.field("NOMBRE").text(), types.field("NOMBRE_CAT").text()});
    });
    dbase::Dataset municipalities(database_, "MUNICIPI");
    municipalities.open();
    dbase::forEachRow(municipalities, [&] {
        const std::string code = municipalities.field("COD_INE").text();
        if (!municipalities.field("ENT_MENOR").logical() && code.size() == 5 &&
            code.find_first_not_of("0123456789") == std::string::npos) {
            known_.try_emplace(static_cast<PlaceCode>(std::stoul(code)),
                               municipalities.field("NOMBRE").text());
        }
    });
}

void DirectoryLoading::take(std::unique_ptr<Edition> edition) {
    if (known_.empty() && !edition->places().hasMunicipalities()) {
        throw Failure(
            "para llenar MUNICIPI hacen falta los nombres de los municipios: dé --unidades o --municipios");
    }
    edition_ = std::move(edition);
    for (const auto& [place, name] : known_) {
        edition_->places().addMunicipality(place, name);
    }
}

LoadSummary DirectoryLoading::visit(RangeOpening opening, const LoadObserver& observer,
                                    const std::function<void(const StreetRow&)>& use) {
    LoadSummary summary;
    StreetTypeCodes types(types_);
    StreetKeys keys;
    edition_->forEachRow(opening, types, keys, [&](const StreetRow& row) {
        ++summary.streetRows;
        ++summary.streets.comes;
        MunicipalitySummary& municipality = summary.byMunicipality[row.official.place];
        if (municipality.comes++ == 0) {
            municipality.name = row.municipality;
        }
        report(row, observer);
        summary.shortenedNames += row.isNameShortened ? 1 : 0;
        summary.openedRows += row.stretch->opened != JoinedStretch().opened ? 1 : 0;
        use(row);
    });
    summary.unknownTypes = types.unknown();
    summary.municipalities.comes = known_.empty() ? edition_->places().rows().size() : 0;
    return summary;
}

LoadSummary DirectoryLoading::simulate(RangeOpening opening, const LoadObserver& observer) {
    return visit(opening, observer, [](const StreetRow&) {});
}

// All three are held before the first row is written, so that a station that uses one is found at once.
LoadSummary DirectoryLoading::store(RangeOpening opening, const std::string& /*undoFile*/,
                                    const LoadObserver& observer) {
    NewProvenance made(folder_);
    TableFilling streets(folder_, "POSTAL",
                         {"CODIGO1", "PROVINCIA", "CAPITAL", "TIPO_VIA", "VIA", "IMPAR_INI", "IMPAR_FIN",
                          "PAR_INI", "PAR_FIN", "CODPOSTAL", "MUNICIPI", "COD_INE"});
    TableFilling provenance(folder_, "PROCEDEN",
                            {"CODIGO1", "FUENTE", "EDICION", "CLAVE", "LINEA", "ABIERTO", "ABREVIADO"});
    std::optional<TableFilling> municipalities;
    if (known_.empty()) {
        municipalities.emplace(folder_, "MUNICIPI",
                               std::initializer_list<const char*>{"COD_INE", "CODPOSTAL", "UNICO", "CAPITAL",
                                                                  "NOMBRE", "COD_PROV", "COD_MUN",
                                                                  "ENT_MENOR", "NOM_MUNICI"});
        for (const PlaceRow& row : edition_->places().rows()) {
            addMunicipality(*municipalities, row);
        }
    }
    const LoadSummary summary = visit(opening, observer, [&](const StreetRow& row) {
        addStreet(streets, row);
        addProvenance(provenance, row, edition_->date());
    });
    if (municipalities) {
        municipalities->finish(observer.progress);
    }
    provenance.finish(observer.progress);
    made.keep();
    streets.finish(observer.progress);
    return summary;
}

} // namespace ambrel::directory
