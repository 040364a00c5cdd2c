// A table beside which a journal is left, and those who work on it.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "dbase/journal/journal.h"
#include "dbase/support/ChildProcess.h"
#include "dbase/support/StoredTable.h"
#include "dbase/system/bytes.h"
#include "dbase/system/notices.h"
#include "dbase/table/check.h"
#include "dbase/table/table.h"
#include "support/TemporaryFolder.h"

namespace dbase::test {

/// A table of ten rows in a folder, a program that dies while it works on it, and other programs.
class RestoredTable : public ::testing::Test {
protected:
    RestoredTable() {
        before_ = setNoticeHandler([this](const std::string& text) { notices_.push_back(text); });
        createTable(folder_.path(), {.name = "CALLES",
                                     .columns = {{"CODIGO", ColumnType::Character, 8, 0, 0},
                                                 {"NOMBRE", ColumnType::Character, 40, 0, 0}},
                                     .tags = {{.name = "CODIGO", .expression = "CODIGO"},
                                              {.name = "NOMBRE", .expression = "NOMBRE"}}});
        const auto table = Table::open(path());
        schema_ = table->schema();
        for (int i = 1; i <= 10; ++i) {
            static_cast<void>(table->append(row(i)));
        }
    }
    ~RestoredTable() override {
        setBootIdentity(ownIdentity_);
        setNoticeHandler(before_);
    }

    [[nodiscard]] std::string path() const { return folder_ / "CALLES.DBF"; }
    [[nodiscard]] std::string indexPath() const { return folder_ / "CALLES.MDX"; }
    [[nodiscard]] std::string journalPath() const { return folder_ / "CALLES.AMJ"; }
    [[nodiscard]] std::string asidePath() const { return folder_ / "CALLES.AMJ.apartado"; }
    [[nodiscard]] Bytes row(int i, const std::string& name = "CALLE") const {
        return makeRecord(schema_, {std::to_string(99000000 + i), name + " " + std::to_string(i * 7 % 11)});
    }

    /// A program that works on the table with acknowledged changes and is killed in the middle of nothing.
    static void workAndDie(const std::string& file, const std::function<void(Table&)>& work) {
        ChildProcess child([&](const ChildProcess::Link& link) {
            const auto table = Table::open(file);
            work(*table);
            link.tell();
            link.await();
            return 0;
        });
        child.await();
        child.kill();
        static_cast<void>(child.join());
    }
    void addAndDie(int first, int last) const {
        workAndDie(path(), [&](Table& table) {
            for (int i = first; i <= last; ++i) {
                static_cast<void>(table.append(row(i), Durability::Disk));
            }
        });
    }
    /// What has happened since is on the disk of a machine that stops now.
    static void restart() { setBootIdentity("after the stop"); }

    /// Writes a file anew, as a copying program does: the same inode.
    static void copyOver(const std::string& file, const Bytes& bytes) { writeFile(file, bytes); }
    /// Puts another file in its place, as an unpacking program does: another inode.
    static void exchange(const std::string& file, const Bytes& bytes) {
        writeFile(file + ".x", bytes);
        std::filesystem::rename(file + ".x", file);
    }

    /// Adds a row as a program does that keeps no journal and no index.
    void appendForeign(const Bytes& record) const {
        Bytes bytes = readFile(path());
        const std::uint32_t count = load32(bytes.data() + 4);
        bytes.resize(schema_.headerLength + std::size_t{count} * schema_.recordLength);
        bytes.insert(bytes.end(), record.begin(), record.end());
        bytes.push_back(endMark);
        store32(bytes.data() + 4, count + 1);
        copyOver(path(), bytes);
    }

    /// The rows of the table, which must open for writing, be sound and leave no journal.
    [[nodiscard]] std::vector<Bytes> rowsWhenSound() const {
        std::vector<Bytes> rows;
        {
            const auto table = Table::open(path());
            EXPECT_FALSE(table->isReadOnly()) << table->readOnlyReason();
            const RecordNumber count = table->read([&] { return table->records().recordCount(); });
            for (RecordNumber number = 1; number <= count; ++number) {
                rows.push_back(storedRecord(*table, number));
            }
        }
        EXPECT_EQ(findings(path()), "");
        EXPECT_FALSE(std::filesystem::exists(journalPath()));
        EXPECT_EQ(readFile(path()).back(), endMark);
        return rows;
    }
    [[nodiscard]] std::vector<Bytes> rowsUpTo(int last) const {
        std::vector<Bytes> rows;
        for (int i = 1; i <= last; ++i) {
            rows.push_back(row(i));
        }
        return rows;
    }
    [[nodiscard]] std::string notesOfCheck() const {
        std::string text;
        for (const Finding& note : checkTable(path()).notes) {
            text += note.file + ": " + note.place + ": " + note.text + '\n';
        }
        return text;
    }

    TemporaryFolder folder_;
    Schema schema_;
    std::vector<std::string> notices_;

private:
    std::string ownIdentity_ = bootIdentity();
    NoticeHandler before_;
};

} // namespace dbase::test
