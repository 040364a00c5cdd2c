// Test fixture: the window that audits the tables, opened from the menu of the host.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <filesystem>
#include <string>
#include <vector>

#include "dbase/dataset/dataset.h"
#include "host/FormTest.h"
#include "host/audit/AuditWindow.h"

namespace host_tests {

class AuditWindowTest : public FormTest {
protected:
    AuditWindowTest() { addCustomers({{"Ana", "CL", "ALCALA", "60", "28009", "MADRID", "MADRID"}}); }

    [[nodiscard]] static QDialog* dialog() {
        for (QWidget* const one : QApplication::topLevelWidgets()) {
            if (auto* const found = qobject_cast<host::AuditWindow*>(one)) {
                return found;
            }
        }
        return nullptr;
    }
    template<class Widget>
    [[nodiscard]] static Widget& part(const char* name) {
        return *dialog()->findChild<Widget*>(QLatin1String(name));
    }
    [[nodiscard]] static QString says(const char* name) { return part<QLabel>(name).text(); }
    [[nodiscard]] static bool mayClick(const char* name) { return part<QPushButton>(name).isEnabled(); }
    static void clickIn(const char* name) { QTest::mouseClick(&part<QPushButton>(name), Qt::LeftButton); }
    static bool waitForTheEnd() {
        return QTest::qWaitFor([] { return mayClick("BBEmpezar"); }, 30000);
    }
    /// Presses a button by its letter: it is seen pressed for a moment before it acts.
    static bool runByKey(Qt::Key key) {
        QTest::keyClick(dialog(), key, Qt::AltModifier);
        return QTest::qWaitFor([] { return !mayClick("BBEmpezar"); }) && waitForTheEnd();
    }
    /// Opens the window from the menu and waits until the audit is whole.
    void audit() {
        open();
        choose("MIRevisarTablas");
        ASSERT_TRUE(waitForTheEnd());
    }
    [[nodiscard]] static QStringList rowsOf(const char* table, const std::vector<int>& columns) {
        QStringList rows;
        const QAbstractItemModel& model = *part<QTableView>(table).model();
        for (int row = 0; row < model.rowCount(); ++row) {
            QStringList cells;
            for (const int column : columns) {
                cells << model.index(row, column).data().toString();
            }
            rows << cells.join(QLatin1Char('|'));
        }
        return rows;
    }
    /// Severity, row and proposal of each finding.
    [[nodiscard]] static QStringList findings() { return rowsOf("GHallazgos", {0, 1, 3}); }
    /// Chooses a class by keys.
    static void chooseClass(const QString& title) {
        auto& classes = part<QTableView>("GClases");
        classes.setFocus();
        QTest::keyClick(&classes, Qt::Key_Home, Qt::ControlModifier);
        for (int row = 1; classes.currentIndex().siblingAtColumn(0).data().toString() != title; ++row) {
            ASSERT_LT(row, classes.model()->rowCount()) << title.toStdString();
            QTest::keyClick(&classes, Qt::Key_Down);
        }
    }
    [[nodiscard]] static std::string storedStreet(const char* key, const char* column) {
        dbase::Dataset table("DB", "POSTAL", "CODIGO1");
        table.open();
        goToStreet(table, key);
        return table.field(column).text();
    }
    [[nodiscard]] std::filesystem::path file(const char* name) const {
        return std::filesystem::path(folder.path()) / name;
    }
};

} // namespace host_tests
