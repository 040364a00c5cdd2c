// Test fixture: an address wired whose streets and municipalities are suggested as people write them.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QTest>

#include "form/BoxesTest.h"
#include "form/ShownList.h"
#include "services/Confamb.h"

namespace postal_tests {

class BoxSuggestions : public BoxesTest {
protected:
    BoxSuggestions() {
        addProvinces({{"015", "CORUÑA, A"}, {"029", "MALAGA"}});
        addMunicipalities({{"08101", "08901", "HOSPITALET DE LLOBREGAT, L'"},
                           {"15030", "15001", "CORUÑA, A", "N", "0"},
                           {"28079", "28039", "TETUAN DE LAS VICTORIAS", "N", "0", true},
                           {"29067", "29001", "MÁLAGA", "N", "0"}});
        addStreets({{"28000010", "GRAN VIA", "CL", "28013"},
                    {"28000011", "CONSTITUCION", "AV", "28014"},
                    {"28000012", "SANTA TERESA", "CL", "28012", {1, 9}, {2, 8}},
                    {"28000013", "SANTA TERESA", "CL", "28014", {11, 9999}, {10, 9998}},
                    {"28000014", "HORNO VIEJO", "CL", "28012"}});
    }
    ~BoxSuggestions() override { Config.EntidadesMenores = false; }

    /// Replaces a box's text by typing; the box keeps the focus.
    void write(Box which, const QString& text) {
        enter(which);
        box(which).selectAll();
        press(Qt::Key_Delete);
        type(text);
        QApplication::processEvents();
    }
    [[nodiscard]] static bool listCame() {
        return QTest::qWaitFor([] { return shownList() != nullptr; });
    }
    [[nodiscard]] static bool noListComes() {
        QTest::qWait(50); // the streets of these tables are read in less
        return shownList() == nullptr;
    }
    /// Types, chooses a row with Down and takes it with Return.
    void choose(Box which, const QString& text, int row = 0) {
        write(which, text);
        ASSERT_TRUE(listCame()) << text.toStdString();
        for (int downs = 0; downs <= row; ++downs) {
            press(Qt::Key_Down);
        }
        press(Qt::Key_Return);
        EXPECT_FALSE(shownList());
        EXPECT_TRUE(box(which).hasFocus());
    }
};

} // namespace postal_tests
