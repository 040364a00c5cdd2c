// The import dialog over a few of the host's places.
#include "import/ImportForm.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QProgressBar>
#include <QTest>
#include <filesystem>
#include <fstream>

#include "services/Text.h"
#include "support/ShownWindow.h"
#include "tools/callejero/Answers.h"

namespace postal_tests {
namespace {

std::unique_ptr<const callejero::Directory> directory() {
    using callejero::Municipality;
    return callejero::listedDirectory(
        {{.name = "LA RIOJA",
          .code = 26,
          .municipalities = {{.name = "HARO", .code = 71, .streets = {{"CL", "VEGA LA"}}}}},
         {.name = "MADRID",
          .code = 28,
          .municipalities = {Municipality{.name = "ALPEDRETE",
                                          .code = 10,
                                          .streets = {{"CL", "ALPISTE"}, {"AV", "MAYOR"}, {"PZ", "SOL"}}},
                             Municipality{.name = "EL ESCORIAL", .code = 54, .streets = {{"CL", "REAL"}}},
                             Municipality{.name = "MADRID", .code = 900, .streets = {{"CL", "ALCALA"}}},
                             Municipality{.name = "PARLA", .code = 106}}}});
}

} // namespace

ImportForm::ImportForm() : service(directory()) {
    addProvinces({{"028", "MADRID"}, {"026", "RIOJA, LA"}, {"110", "FRANCIA", 3}});
    addMunicipalities({{"26071", "26200", "HARO", "S"},
                       {"28010", "28430", "ALPEDRETE", "S"},
                       {"28013", "28300", "ARANJUEZ/REAL SITIO", "S"},
                       {"28054", "28280", "ESCORIAL (EL)", "S"},
                       {"28079", "28001", "MADRID", "N", "0"},
                       {"28079", "28002", "MADRID", "N", "0"},
                       {"28106", "28980", "PARLA", "N"},
                       {"28106", "28981", "PARLA", "N"},
                       {"28900", "28430", "ÁLAMOS, LOS", "N", "9", true}});
    answering_ = ambrel::setMessageShower([this](const ambrel::MessageBox& box) {
        seenProgress_.push_back(isProgressOpen());
        return answering_(box);
    });
    display_ = ambrel::setProgressDisplay(ambrel::windowProgressDisplay());
    ambrel::setProgressDisplay({.show =
                                    [this](const QString& text, QWidget* owner) {
                                        progress.push_back(text.toStdString());
                                        noteBar();
                                        ++openWindows_;
                                        return display_.show(text, owner);
                                    },
                                .change =
                                    [this](const QString& text, QWidget& window) {
                                        progress.push_back(text.toStdString());
                                        display_.change(text, window);
                                    },
                                .close =
                                    [this](QWidget& window) {
                                        --openWindows_;
                                        display_.close(window);
                                    }});
    controller = std::make_unique<TClassCodPostales>();
}

ImportForm::~ImportForm() {
    EXPECT_EQ(openWindows_, 0) << "a progress window stayed open";
    EXPECT_EQ(seenProgress_, expectedProgress_) << "the progress window at the message boxes";
    dialog.reset();
    controller.reset(); // before the tables are checked
    ambrel::setProgressDisplay(display_);
    ambrel::setMessageShower(answering_);
}

void ImportForm::noteBar() {
    const auto* const shown = dialog ? dialog->findChild<QProgressBar*>() : nullptr;
    if (!shown || !shown->isVisible()) {
        return;
    }
    const std::string text = std::to_string(shown->value()) + "/" + std::to_string(shown->maximum()) + " " +
                             shown->text().toStdString();
    if (bar.empty() || bar.back() != text) {
        bar.push_back(text);
    }
}

void ImportForm::show() {
    dialog = std::make_unique<TFImportarVias>(nullptr, *controller);
    ambrel::test::showActive(*dialog);
}

void ImportForm::show(const char* mode) {
    show();
    chooseMode(mode);
}

std::string ImportForm::postales(const std::string& name) const { return folder / ("POSTALES/" + name); }

void ImportForm::file(const std::string& name, const std::string& content) {
    const std::filesystem::path path = postales(name);
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary)
        << (path.extension() == ".dat" ? ambrel::test::ansi(content) : content);
}

std::string ImportForm::answer(const std::vector<std::pair<std::string, std::string>>& streets) {
    callejero::Municipality municipality{.name = "X", .code = 1};
    for (const auto& [type, name] : streets) {
        municipality.streets.push_back({type, name});
    }
    return callejero::streetsAnswer({.name = "X", .code = 1}, municipality);
}

std::string ImportForm::chosen(const char* name) const { return combo(name).currentText().toStdString(); }

Texts ImportForm::items(const char* name) const {
    Texts texts;
    for (int index = 0; index < combo(name).count(); ++index) {
        texts.push_back(combo(name).itemText(index).toStdString());
    }
    return texts;
}

std::string ImportForm::message() const { return control<QLabel>("LMensaje_").text().toStdString(); }

std::string ImportForm::focused() const {
    return dialog->focusWidget() ? dialog->focusWidget()->objectName().toStdString() : std::string();
}

Texts ImportForm::rows() const {
    const QAbstractItemModel& model = *control<ambrel::StreetGrid>("SGVias").model();
    Texts rows;
    for (int row = 0; row < model.rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < model.columnCount(); ++column) {
            cells << model.index(row, column).data().toString();
        }
        rows.push_back(cells.join(QLatin1Char('|')).toStdString());
    }
    return rows;
}

Texts ImportForm::stored() {
    dbase::Dataset table("DB", "POSTAL");
    table.open();
    Texts rows;
    if (table.isEmpty()) {
        return rows;
    }
    do {
        rows.push_back(ambrel::fromWindows1252(table.field("TIPO_VIA").text() + " " +
                                               table.field("VIA").text() + " " +
                                               table.field("CODPOSTAL").text())
                           .toStdString());
    } while (table.next());
    return rows;
}

void ImportForm::choose(const char* name, const char* item) const {
    QComboBox& box = combo(name);
    const int wanted = box.findText(QString::fromUtf8(item));
    ASSERT_GE(wanted, 0) << item << " is not in " << name;
    box.setFocus();
    for (int step = 0; step < box.count() && box.currentIndex() != wanted; ++step) {
        QTest::keyClick(&box, box.currentIndex() < wanted ? Qt::Key_Down : Qt::Key_Up);
    }
    ASSERT_EQ(box.currentIndex(), wanted);
}

void ImportForm::click(const char* name) const {
    QTest::mouseClick(&control<QPushButton>(name), Qt::LeftButton);
}

void ImportForm::chooseMode(const char* mode) const {
    QRadioButton& button = control<QRadioButton>(mode);
    QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(8, button.height() / 2));
}

void ImportForm::press(Qt::Key key, Qt::KeyboardModifiers modifiers) const {
    QTest::keyClick(dialog->focusWidget(), key, modifiers);
}

void ImportForm::chooseMenuItem() const {
    ambrel::test::child<QAction>(*dialog, "MIGuardarPorProvincia").trigger();
}

void ImportForm::expectBox(const char* text, const char* title, bool whileProgress) {
    messages.expect(QString::fromUtf8(text), QString::fromUtf8(title));
    expectedProgress_.push_back(whileProgress);
}

bool ImportForm::isProgressOpen() const { return openWindows_ > 0; }

} // namespace postal_tests
