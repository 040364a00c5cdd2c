// Test fixture: the files of an exchange of several tables that was stopped after its decision.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ExchangedTables.h"
#include "RecordingFolders.h"
#include "support/TemporaryFolder.h"

namespace dbase::test {

inline constexpr const char* exchangeFolder = "/datos";
inline constexpr Authors authorsAfter{1, 1, 1};

class ExchangeRemains : public ::testing::Test {
protected:
    ExchangeRemains();
    ~ExchangeRemains() override;

    /// The state right after the decision, and that with two tables exchanged, and the third one amid it.
    void stopDecided() { decided_.writeInto(disk_.path()); }
    void stopBegun() { begun_.writeInto(disk_.path()); }

    [[nodiscard]] static bool isDecided(const FolderImage& image);
    [[nodiscard]] std::string path(const std::string& file) const { return disk_ / file; }
    /// Puts a sound table of another author in place of one, as a backup is restored.
    void restore(const std::string& table,
                 const std::vector<std::string>& extensions = {".DBF", ".MDX"}) const;
    /// Finds these authors, whichever table is opened first, and nothing left over.
    void expectAuthors(const Authors& expected);
    void expectNotice(const std::string& table) const;

    TemporaryFolder disk_;
    FolderImage decided_, begun_;
    std::string notices_;
};

} // namespace dbase::test
