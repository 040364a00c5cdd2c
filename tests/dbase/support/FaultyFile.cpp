#include "FaultyFile.h"

namespace dbase::test {

bool FaultyFile::strikes(std::size_t number, std::size_t failing) const {
    if (failing == Faults::never || number < failing || (number > failing && !faults_->keepsFailing))
        return false;
    if (faults_->insteadOfFailing)
        faults_->insteadOfFailing();
    return true;
}

void FaultyFile::fail(ErrorCode code) const { throw Error(code, path(), "fallo provocado"); }

void FaultyFile::read(std::uint64_t offset, std::span<char> bytes) const {
    if (strikes(++faults_->reads, faults_->failingRead))
        fail(ErrorCode::Io);
    file_->read(offset, bytes);
}

void FaultyFile::write(std::uint64_t offset, std::span<const char> bytes) {
    if (offset + bytes.size() > std::max(faults_->largestSize, file_->size()))
        fail(ErrorCode::DiskFull);
    const std::size_t number = ++faults_->writes;
    const bool isFailing = number == faults_->failingWrite;
    if (isFailing && faults_->tearsWrite)
        file_->write(offset, bytes.first(bytes.size() / 2));
    if (strikes(number, faults_->failingWrite))
        fail(ErrorCode::Io);
    file_->write(offset, bytes);
}

void FaultyFile::resize(std::uint64_t size) {
    if (strikes(++faults_->writes, faults_->failingWrite))
        fail(ErrorCode::Io);
    file_->resize(size);
}

void FaultyFile::sync() {
    if (strikes(++faults_->syncs, faults_->failingSync))
        fail(ErrorCode::Io);
    file_->sync();
}

} // namespace dbase::test
