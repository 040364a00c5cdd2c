// Stops an exchange at two places.
#include "ExchangeRemains.h"

#include <algorithm>
#include <filesystem>

#include "dbase/support/StoredTable.h"
#include "dbase/system/notices.h"
#include "dbase/table/bulk_loader.h"
#include "dbase/table/exchange_intention.h"
#include "dbase/table/table_creation.h"

namespace dbase::test {

namespace fs = std::filesystem;

ExchangeRemains::ExchangeRemains() {
    setNoticeHandler([this](const std::string& text) { notices_ += text + '\n'; });
    RecordingFolders folders;
    makeExchangedTables(exchangeFolder, folders);
    FolderImage image = folders.image();
    folders.startLog();
    exchangeBy(1, exchangeFolder, folders);
    for (const FolderEvent& event : folders.log()) {
        image.apply(event);
        if (decided_.names.empty() && isDecided(image)) {
            decided_ = image;
        }
        if (begun_.names.empty() && isDecided(image) && event.kind == FolderEvent::Kind::Write &&
            event.file == image.names.at("/datos/PUEBLOS.DBF")) {
            begun_ = image;
        }
    }
}

ExchangeRemains::~ExchangeRemains() { setNoticeHandler({}); }

bool ExchangeRemains::isDecided(const FolderImage& image) {
    const auto found = image.names.find("/datos/INTENCION.AMI");
    if (found == image.names.end()) {
        return false;
    }
    const Bytes& bytes = image.contents.at(found->second);
    return decodeIntention({bytes.data(), bytes.size()}).has_value();
}

void ExchangeRemains::restore(const std::string& table, const std::vector<std::string>& extensions) const {
    const TemporaryFolder backup;
    createTable(backup.path(), exchangedDefinition(table));
    {
        BulkLoader loader(backup / (table + ".DBF"), BulkLoader::Mode::Append);
        for (int number = 1; number <= 12; ++number) {
            loader.add(makeRecord(loader.schema(), {"7", "FILA " + std::to_string(number)}));
        }
        loader.finish();
    }
    for (const std::string& extension : extensions) {
        fs::copy_file(backup / (table + extension), path(table + extension),
                      fs::copy_options::overwrite_existing);
    }
}

void ExchangeRemains::expectAuthors(const Authors& expected) {
    EXPECT_EQ(authorsIn(disk_.path(), 0), expected);
    EXPECT_EQ(authorsIn(disk_.path(), 2), expected);
    std::vector<std::string> files;
    for (const fs::directory_entry& entry : fs::directory_iterator(disk_.path())) {
        files.push_back(entry.path().filename().string());
        if (files.back().ends_with(".DBF")) {
            EXPECT_EQ(findings(entry.path()), "");
        }
    }
    EXPECT_TRUE(std::ranges::none_of(files, [](const std::string& name) {
        return name.ends_with(".nuevo") || name.ends_with(".AMI") || name.ends_with(".AMC");
    })) << ::testing::PrintToString(files);
}

void ExchangeRemains::expectNotice(const std::string& table) const {
    EXPECT_NE(notices_.find(path(table)), std::string::npos) << notices_;
}

} // namespace dbase::test
