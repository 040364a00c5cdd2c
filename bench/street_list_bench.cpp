// What a user of the street list waits for, on a small and on a large directory: opening it, and a key in its
// search box.

#include <optional>

#include <QCoreApplication>
#include <QLineEdit>
#include <benchmark/benchmark.h>

#include "controller/ClasCodPostales.h"
#include "dialogs/BuscarDireccionPostal.h"
#include "services/Confamb.h"

#include "application.h"
#include "directory_folder.h"
#include "stopwatch.h"

namespace bench {

namespace {

// A host whose own province is the one that the list opens with.
void startHost() {
    ensureApplication();
    const std::string name = provinceName(shownProvince);
    Config.setProvince(shownProvince, name, name);
}

// The list as a host's menu opens it.
class ShownStreets {
public:
    explicit ShownStreets(TClassCodPostales& controller) : list_(nullptr, controller, true) {
        list_.show();
        paint();
    }
    [[nodiscard]] QLineEdit* edit() const { return list_.findChild<QLineEdit*>("EVia"); }
    /// Reads and paints what has changed.
    static void paint() { QCoreApplication::processEvents(); }

private:
    TFBuscarDireccionPostal list_;
};

void openList(benchmark::State& state, Directory size) {
    startHost();
    const DirectoryInUse directory(size);
    TClassCodPostales controller;
    for (auto _ : state) {
        std::optional<ShownStreets> list;
        state.SetIterationTime(secondsOf([&] { list.emplace(controller); }));
    }
}

// The third letter of an existing name; the first two are already in the box.
void typeKey(benchmark::State& state, Directory size) {
    startHost();
    const DirectoryInUse directory(size);
    TClassCodPostales controller;
    ShownStreets list(controller);
    QLineEdit* const edit = list.edit();
    std::size_t number = 0;
    for (auto _ : state) {
        const auto& names = smallDirectoryNames();
        const QString name = QString::fromStdString(names[number++ % names.size()]);
        edit->setText(name.left(2));
        ShownStreets::paint();
        state.SetIterationTime(secondsOf([&] {
            typeLetter(*edit, name[2]);
            ShownStreets::paint();
        }));
    }
}

void openSmall(benchmark::State& state) { openList(state, Directory::Small); }
void openLarge(benchmark::State& state) { openList(state, Directory::Large); }
void typeSmall(benchmark::State& state) { typeKey(state, Directory::Small); }
void typeLarge(benchmark::State& state) { typeKey(state, Directory::Large); }

BENCHMARK(openSmall)
    ->Name("street_dialog/1k")
    ->Iterations(100)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(openLarge)
    ->Name("street_dialog/1m5")
    ->Iterations(100)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(typeSmall)
    ->Name("street_keystroke/1k")
    ->Iterations(500)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(typeLarge)
    ->Name("street_keystroke/1m5")
    ->Iterations(500)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

} // namespace

} // namespace bench
