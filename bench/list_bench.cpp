// What a user of a list waits for, on small and on large tables: opening it, and a key in its search box.

#include <algorithm>
#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

#include <QCoreApplication>
#include <QLineEdit>
#include <benchmark/benchmark.h>

#include "data/MunicipiDM.h"
#include "data/TableDefinitions.h"
#include "dbase/system/databases.h"
#include "dialogs/MunicipiLista.h"
#include "services/Confamb.h"

#include "application.h"
#include "postal_rows.h"
#include "stopwatch.h"
#include "table_filling.h"

namespace bench {

namespace {

constexpr std::uint32_t entitiesOfOne = 14; // minor entities for each municipality
constexpr std::uint32_t mostCodes = 100'000;

std::string digits(std::uint64_t number, std::size_t width) {
    const std::string text = std::to_string(number);
    return std::string(width - std::min(width, text.size()), '0') + text;
}

// All kinds of beginnings, unordered.
std::string placeName(std::uint32_t number) {
    std::uint32_t bits = number * 2654435761U;
    std::string text;
    for (int i = 0; i < 6; ++i, bits /= 26) {
        text += static_cast<char>('A' + bits % 26);
    }
    return text + " DE LA " + std::to_string(number);
}

// First a municipality of each code, then the entities, in no tag's order.
void makeMunicipalities(const std::string& folder, std::uint32_t rows) {
    makeTable(folder, ambrel::municipalityTable(), [rows](dbase::BulkLoader& loader, std::span<char> record) {
        const Columns columns(loader.schema(), record);
        const std::uint32_t codes = std::min(mostCodes, rows / (entitiesOfOne + 1) + 1);
        for (std::uint32_t i = 0; i < rows; ++i) {
            const bool isEntity = i >= codes;
            const std::string code = digits(std::uint64_t{i} * 104'729 % codes, 5);
            columns.set("COD_INE", code);
            columns.set("COD_PROV", code.substr(0, 2));
            columns.set("CODPOSTAL", digits(i * 7919U % 100'000U, 5));
            columns.set("NOMBRE", placeName(i));
            columns.set("UNICO", "S");
            columns.set("CAPITAL", "9");
            dbase::encodeLogical(columns.raw("ENT_MENOR"), isEntity);
            loader.add(record);
        }
    });
}

/// The name under which the folder with this many municipalities is registered; created at the first call.
std::string municipalities(std::uint32_t rows) {
    const std::string name = "LISTA" + std::to_string(rows);
    const std::string folder = workFolder + '/' + name;
    if (!std::filesystem::exists(folder)) {
        makeMunicipalities(folder, rows);
        dbase::setDatabaseFolder(name, folder);
    }
    return name;
}

// The data module, the table and the list, as a routine shows them.
class ShownList {
public:
    explicit ShownList(const std::string& database) : module_(database) {
        Config.EntidadesMenores = true;
        DMMunicipi = &module_;
        module_.tbMunicipi.setTag("NOMBRE");
        module_.tbMunicipi.open();
        list_ = std::make_unique<TFMunicipiLista>(nullptr);
        list_->show();
        paint();
    }
    ~ShownList() {
        list_.reset();
        module_.tbMunicipi.close();
        DMMunicipi = nullptr;
    }
    ShownList(const ShownList&) = delete;
    ShownList& operator=(const ShownList&) = delete;

    [[nodiscard]] QLineEdit* edit() const { return list_->findChild<QLineEdit*>("ENOMBRE"); }
    void paint() {
        QCoreApplication::processEvents();
        list_->repaint();
    }

private:
    TDMMunicipi module_;
    std::unique_ptr<TFMunicipiLista> list_;
};

// Reports the fastest tenth's limit, which other programs on the machine hardly affect.
template<typename Work>
void reportUndisturbed(benchmark::State& state, int count, Work&& work) {
    for (auto _ : state) {
        std::vector<double> seconds;
        for (int i = 0; i < count; ++i) {
            seconds.push_back(work());
        }
        std::nth_element(seconds.begin(), seconds.begin() + count / 10, seconds.end());
        state.SetIterationTime(seconds[static_cast<std::size_t>(count) / 10]);
    }
}

void openList(benchmark::State& state, std::uint32_t rows) {
    ensureApplication();
    const std::string database = municipalities(rows);
    reportUndisturbed(state, 200, [&] {
        std::optional<ShownList> list;
        return secondsOf([&] { list.emplace(database); });
    });
}

// The third letter of an existing name; the first two are already in the box.
void typeKey(benchmark::State& state, std::uint32_t rows) {
    ensureApplication();
    ShownList list(municipalities(rows));
    QLineEdit* const edit = list.edit();
    std::uint32_t number = 0;
    reportUndisturbed(state, 1000, [&] {
        const QString name = QString::fromStdString(placeName(number++ * 7907U % rows));
        edit->setText(name.left(2));
        list.paint();
        return secondsOf([&] {
            typeLetter(*edit, name[2]);
            list.paint();
        });
    });
}

void openSmall(benchmark::State& state) { openList(state, 1'000); }
void openMiddle(benchmark::State& state) { openList(state, std::min<std::uint32_t>(90'000, rowCount)); }
void openLarge(benchmark::State& state) { openList(state, rowCount); }
void typeSmall(benchmark::State& state) { typeKey(state, 1'000); }
void typeLarge(benchmark::State& state) { typeKey(state, rowCount); }

BENCHMARK(openSmall)->Name("list/1k")->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(openMiddle)->Name("list/90k")->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(openLarge)->Name("list/1m5")->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(typeSmall)->Name("keystroke/1k")->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(typeLarge)->Name("keystroke/1m5")->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace

} // namespace bench
