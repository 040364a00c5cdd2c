// A folder with a street table for several processes.
#include "StreetFolder.h"

#include <cstdio>
#include <cstring>
#include <exception>

#include <sched.h>

#include "data/TableDefinitions.h"
#include "dbase/mdx/index_layout.h"
#include "dbase/support/StoredTable.h"
#include "dbase/system/bytes.h"
#include "dbase/system/databases.h"

namespace resistance {

StreetFolder::StreetFolder() {
    dbase::setDatabaseFolder("DB", folder_.path());
    beginAnew();
}

StreetFolder::~StreetFolder() { dbase::setDatabaseFolder("DB", {}); }

void StreetFolder::beginAnew() const {
    dbase::createTable(folder_.path(), ambrel::streetTable(), dbase::IfExists::Replace);
}

bool StreetFolder::markStands() const {
    const auto index = dbase::openFile(indexFile(), dbase::OpenMode::ReadOnly);
    std::array<char, 12> stamp{};
    index->read(dbase::mdx::stamp, stamp);
    return std::memcmp(stamp.data(), dbase::mdx::stampMagic, 8) == 0 && dbase::load32(stamp.data() + 8) != 0;
}

void StreetFolder::awaitPosts(const PostLog& log, std::size_t posts, const ChildProcess& writer) {
    while (log.acknowledged() < posts && !log.isFull() && !writer.hasEnded()) {
        sched_yield();
    }
}

void StreetFolder::expectSound() const { EXPECT_EQ(dbase::test::findings(tableFile()), ""); }

StreetFolder::Work StreetFolder::telling(Work work) {
    return [work = std::move(work)](const ChildProcess::Link& link) {
        try {
            return work(link);
        } catch (const std::exception& error) {
            std::fprintf(stderr, "%s\n", error.what());
            throw;
        }
    };
}

} // namespace resistance
