// A file, and a journal's place, that fail when told to.
#include "FaultyFile.h"

namespace dbase::test {

bool Faults::strike(std::size_t number, std::size_t failing) const {
    if (failing == never || number < failing || (number > failing && !keepsFailing)) {
        return false;
    }
    if (insteadOfFailing) {
        insteadOfFailing();
    }
    return true;
}

void FaultyFile::fail(ErrorCode code) const { throw Error(code, path(), "fallo provocado"); }

void FaultyFile::read(std::uint64_t offset, std::span<char> bytes) const {
    if (faults_->strike(++faults_->reads, faults_->failingRead)) {
        fail(faults_->code);
    }
    file_->read(offset, bytes);
}

void FaultyFile::write(std::uint64_t offset, std::span<const char> bytes) {
    if (offset + bytes.size() > std::max(faults_->largestSize, file_->size())) {
        fail(ErrorCode::DiskFull);
    }
    const std::size_t number = ++faults_->writes;
    const bool isFailing = number == faults_->failingWrite;
    if (isFailing && faults_->tearsWrite) {
        file_->write(offset, bytes.first(bytes.size() / 2));
    }
    if (faults_->strike(number, faults_->failingWrite)) {
        fail(faults_->code);
    }
    file_->write(offset, bytes);
}

void FaultyFile::resize(std::uint64_t size) {
    if (faults_->strike(++faults_->writes, faults_->failingWrite)) {
        fail(faults_->code);
    }
    file_->resize(size);
}

void FaultyFile::sync() {
    if (faults_->strike(++faults_->syncs, faults_->failingSync)) {
        fail(faults_->code);
    }
    file_->sync();
}

void FaultyJournal::step() const {
    if (faults_->strike(++faults_->journalSteps, faults_->failingJournalStep)) {
        throw Error(faults_->code, "MEMORIA.AMJ", "fallo provocado");
    }
}

std::unique_ptr<File> FaultyJournal::openExisting() {
    step();
    std::unique_ptr<File> file = place_->openExisting();
    return file ? std::make_unique<FaultyFile>(std::move(file), faults_) : nullptr;
}

std::unique_ptr<File> FaultyJournal::create() {
    step();
    return std::make_unique<FaultyFile>(place_->create(), faults_);
}

void FaultyJournal::remove() {
    step();
    place_->remove();
}

std::string FaultyJournal::setAside() {
    step();
    return place_->setAside();
}

} // namespace dbase::test
