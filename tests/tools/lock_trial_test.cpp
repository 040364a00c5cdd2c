// The trial of locks finds broken ones.
#include "tools/lock_trial.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "dbase/system/error.h"
#include "support/TemporaryFolder.h"

namespace {

using ambcp::LockProbe;

bool works(const std::vector<LockProbe>& probes, const std::string& question) {
    const auto found = std::ranges::find(probes, question, &LockProbe::question);
    EXPECT_NE(found, probes.end()) << question;
    return found != probes.end() && found->works;
}

/// Passes everything on to a file on the disk, except its locks.
class UnlockableFile : public dbase::File {
public:
    UnlockableFile(std::unique_ptr<dbase::File> file, bool grants)
        : file_(std::move(file)), grants_(grants) {}

    [[nodiscard]] const std::string& path() const override { return file_->path(); }
    [[nodiscard]] bool isWritable() const override { return file_->isWritable(); }
    [[nodiscard]] std::uint64_t size() const override { return file_->size(); }
    void read(std::uint64_t offset, std::span<char> bytes) const override { file_->read(offset, bytes); }
    void write(std::uint64_t offset, std::span<const char> bytes) override { file_->write(offset, bytes); }
    void resize(std::uint64_t size) override { file_->resize(size); }
    void sync() override { file_->sync(); }
    [[nodiscard]] bool tryLock(dbase::LockRange, dbase::LockKind) override { return grants_; }
    void unlock(dbase::LockRange) noexcept override {}
    [[nodiscard]] bool isLockedByOthers(dbase::LockRange) const override { return false; }

private:
    std::unique_ptr<dbase::File> file_;
    bool grants_;
};

ambcp::FileOpener filesWhoseLocks(bool grant) {
    return [grant](const std::string& path, dbase::OpenMode mode) {
        return std::make_unique<UnlockableFile>(dbase::openFile(path, mode), grant);
    };
}

TEST(LockTrial, EverythingWorksOnADiskOfThisMachine) {
    const TemporaryFolder folder;
    for (const LockProbe& probe : ambcp::tryLocks(folder.path())) {
        EXPECT_TRUE(probe.works) << probe.question;
    }
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST(LockTrial, LocksThatAreGrantedToEverybodyAreFound) {
    const TemporaryFolder folder;
    const auto probes = ambcp::tryLocks(folder.path(), filesWhoseLocks(true));
    EXPECT_TRUE(works(probes, "un proceso puede bloquear"));
    EXPECT_FALSE(works(probes, "otro proceso no puede bloquear lo mismo"));
    EXPECT_FALSE(works(probes, "otro proceso no puede leer lo bloqueado"));
    EXPECT_FALSE(works(probes, "nadie puede escribir mientras otro lee"));
    EXPECT_FALSE(works(probes, "dos cursores de un mismo proceso se respetan"));
    EXPECT_TRUE(works(probes, "lo que escribe un proceso lo lee otro enseguida"));
}

TEST(LockTrial, LocksThatNobodyGetsAreFound) {
    const TemporaryFolder folder;
    const auto probes = ambcp::tryLocks(folder.path(), filesWhoseLocks(false));
    EXPECT_FALSE(works(probes, "un proceso puede bloquear"));
    EXPECT_FALSE(works(probes, "otro proceso puede bloquear otro registro"));
    EXPECT_FALSE(works(probes, "lo que se suelta queda libre"));
    EXPECT_FALSE(works(probes, "dos procesos pueden leer a la vez"));
    EXPECT_FALSE(works(probes, "el bloqueo de un programa que muere queda libre"));
}

TEST(LockTrial, FolderThatIsNotThereIsSaid) {
    const TemporaryFolder folder;
    EXPECT_THROW(static_cast<void>(ambcp::tryLocks(folder / "falta")), dbase::Error);
}

} // namespace
