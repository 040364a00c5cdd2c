// The postal tables, boxes and dialogs for the lookups.
#include "lookup/LookupTables.h"

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <filesystem>

#include "data/MunicipiDM.h"
#include "data/ViasDM.h"
#include "support/Typing.h"

namespace lookup_tests {

using ambrel::test::ansi;
using ambrel::test::child;

void LookupTables::TearDown() {
    EXPECT_EQ(DMMunicipi, nullptr);
    EXPECT_EQ(DMVias, nullptr);
    for (const QWidget* window : QApplication::topLevelWidgets()) {
        EXPECT_FALSE(qobject_cast<const QDialog*>(window)) << window->metaObject()->className() << " is left";
    }
}

void LookupTables::addNumberedMunicipalities(const std::vector<MunicipalityRow>& rows) {
    addMunicipalities(rows);
    dbase::Dataset table("DB", "MUNICIPI");
    table.open();
    while (!table.eof()) {
        table.edit();
        table.field("COD_MUN").setText(table.field("COD_INE").text().substr(2));
        table.post();
        table.next();
    }
}

void LookupTables::addAlternatives(const std::vector<AlternativeRow>& rows) const {
    dbase::Dataset table("DB", "MUNICIMJ");
    table.open();
    for (const AlternativeRow& row : rows) {
        table.append();
        table.field("PROVCOD").setText(row.provCod);
        table.field("POBLCOD").setText(row.poblCod);
        table.field("POBLLITE").setText(ansi(row.poblLite));
        table.post();
    }
}

void LookupTables::removeTable(const std::string& name) const {
    std::filesystem::remove(folder / (name + ".DBF"));
    std::filesystem::remove(folder / (name + ".MDX"));
}

void type(const QDialog& dialog, const char* edit, const QString& text) {
    ambrel::test::typeInto(child<QLineEdit>(dialog, edit), text);
}

void accept(const QDialog& dialog) {
    QTest::mouseClick(&child<QPushButton>(dialog, "BBAceptar"), Qt::LeftButton);
}

void leave(const QDialog& dialog) {
    QTest::mouseClick(&child<QPushButton>(dialog, "BBCancelar"), Qt::LeftButton);
}

void escape(QDialog& dialog) {
    QWidget* const focused = dialog.focusWidget();
    QTest::keyClick(focused ? focused : &dialog, Qt::Key_Escape);
}

} // namespace lookup_tests
