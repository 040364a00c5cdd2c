// The maintenance pass over the streets.
#include "controller/InePass.h"

#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "dbase/dataset/dataset.h"
#include "dbase/dataset/row_walk.h"
#include "dbase/dbf/codec.h"
#include "dbase/table/table.h"
#include "services/Confamb.h"
#include "services/Ruttb.h"

namespace ambrel {
namespace {

/// Streets changed under one lock: few enough that other users do not notice the wait.
constexpr dbase::RecordNumber rowsTogether = 512;

struct Municipality {
    std::string name, ineCode;
};

/// The municipalities with one postal code, in table order.
struct PostalCode {
    std::vector<Municipality> all;
    std::optional<Municipality> major; // the first that is not a minor entity
};

/// MUNICIPI by postal code. It is small, and each of its codes covers many streets.
class PostalCodes {
public:
    explicit PostalCodes(dbase::Dataset& municipalities) {
        const dbase::Field& code = municipalities.field("CODPOSTAL");
        const dbase::Field& name = municipalities.field("NOMBRE");
        const dbase::Field& ineCode = municipalities.field("COD_INE");
        const dbase::Field& isMinor = municipalities.field("ENT_MENOR");
        dbase::forEachRow(municipalities, [&] {
            PostalCode& entry = codes_[code.text()];
            entry.all.push_back({name.text(), ineCode.text()});
            if (!entry.major && !isMinor.logical()) {
                entry.major = entry.all.back();
            }
        });
    }

    [[nodiscard]] const PostalCode* find(std::string_view code) const {
        const auto found = codes_.find(code);
        return found == codes_.end() ? nullptr : &found->second;
    }

private:
    struct Hash : std::hash<std::string_view> {
        using is_transparent = void;
    };
    std::unordered_map<std::string, PostalCode, Hash, std::equal_to<>> codes_;
};

/// The columns of POSTAL that the pass reads and writes.
class StreetColumns {
public:
    /// Errors: Error(NotFound) for a table without the columns.
    explicit StreetColumns(dbase::Dataset& streets)
        : code_(column(streets, "CODPOSTAL")), name_(column(streets, "VIA")),
          municipality_(column(streets, "MUNICIPI")), ineCode_(column(streets, "COD_INE")) {}

    [[nodiscard]] bool hasData(const dbase::RecordView& street) const {
        return !text(street, municipality_).empty() || !text(street, ineCode_).empty();
    }

    /// `row`: the street's bytes, to be changed. False if no municipality is found for it.
    bool fill(const dbase::RecordView& street, std::span<char> row, const PostalCodes& codes) const {
        const PostalCode* const code = codes.find(text(street, code_));
        if (!code) {
            return false;
        }
        if (code->major) {
            write(row, *code->major);
        }
        // Every municipality with this code is a minor entity: the street's own name decides.
        if (!dbase::decodeText(raw(row, ineCode_)).empty()) {
            return code->major.has_value();
        }
        for (const Municipality& municipality : code->all) {
            if (municipality.name == text(street, name_)) {
                write(row, municipality);
                return true;
            }
        }
        return code->major.has_value();
    }

private:
    static const dbase::Column& column(dbase::Dataset& table, std::string_view name) {
        static_cast<void>(table.field(name)); // throws if the name is missing
        return table.schema().columns[*table.schema().find(name)];
    }
    static std::string_view text(const dbase::RecordView& street, const dbase::Column& column) {
        return dbase::decodeText(street.raw(column));
    }
    static std::string_view raw(std::span<char> row, const dbase::Column& column) {
        return {row.data() + column.offset, column.width};
    }
    void write(std::span<char> row, const Municipality& municipality) const {
        dbase::encodeText(row.subspan(municipality_.offset, municipality_.width), municipality.name);
        dbase::encodeText(row.subspan(ineCode_.offset, ineCode_.width), municipality.ineCode);
    }

    const dbase::Column &code_, &name_, &municipality_, &ineCode_;
};

} // namespace

InePassCount fillIneCodes(const std::string& database, InePassRows rows, const InePassProgress& progress) {
    const auto streets = CreaTabla(database, "POSTAL.DBF", "VIA", false, openNow);
    const auto municipalities = CreaTabla(database, "MUNICIPI.DBF", "CODPOSTAL", false, openNow);
    const PostalCodes codes(*municipalities);
    const StreetColumns columns(*streets);
    InePassCount count;
    const auto isFilled = [&](const dbase::RecordView& street, std::span<char> row) {
        return (rows == InePassRows::All || !columns.hasData(street)) && columns.fill(street, row, codes);
    };
    const auto fill = [&](const dbase::RecordView& street, std::span<char> row) {
        count.filled += isFilled(street, row) ? 1 : 0;
    };
    const auto countInUse = [&](const dbase::RecordView& street) {
        std::vector<char> row(street.bytes.begin(), street.bytes.end());
        count.inUse += isFilled(street, row) ? 1 : 0;
    };
    // In file order: no street's outcome depends on another's, and neighbours are written together.
    dbase::Table& table = streets->openTable();
    for (dbase::RecordNumber next = 1; next != 0;) {
        next = table.amend(next, rowsTogether, fill, dbase::Durability::Process, countInUse);
        if (next != 0) {
            progress(next - 1, table.records().recordCount());
        }
    }
    if (count.filled != 0 && Config.durability() == dbase::Durability::Disk) {
        table.sync();
    }
    return count;
}

} // namespace ambrel
