// Judges whole addresses: which are right, which can be mended unasked, and what is wrong with the others.
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>

#include "AmbrelExport.h"
#include "address/JudgedAddress.h"

namespace ambrel {

/// What a host decides of the verdicts; see docs/validation.md.
struct ValidationOptions {
    double threshold = 0.90; // confidence from which a change is made unasked
    double lead = 0.05;      // by which the best must be ahead of the second
    /// For the names that are kept of the provinces in use; the one used longest ago goes first.
    std::size_t memory = std::size_t{64} << 20;
};

/// An address, and where its verdict goes.
struct AddressToJudge {
    const GivenAddress* given;
    JudgedAddress* judged;
};

/// Looks addresses up exactly, as the form would, and asks the suggestions about what is not found. Follows
/// the changes of the tables. It reads only, and belongs to one thread. Errors: dbase::Error.
class AMBREL_EXPORT AddressValidator {
public:
    /// `database`: the name under which the folder of the tables is registered. After changing
    /// Config.EntidadesMenores, create a new object.
    explicit AddressValidator(std::string database = "DB", ValidationOptions options = {});
    ~AddressValidator();
    AddressValidator(const AddressValidator&) = delete;
    AddressValidator& operator=(const AddressValidator&) = delete;

    /// The verdict on one address, and what it is based on.
    [[nodiscard]] JudgedAddress validate(const GivenAddress& given);
    /// The same for several, which takes less time: they wait for the memory of the tables together.
    void validate(std::span<const AddressToJudge> addresses);

    /// The name of a province as PROVIN holds it; empty if it does not.
    [[nodiscard]] std::string provinceName(const std::string& province);

private:
    class Implementation;
    std::unique_ptr<Implementation> implementation_;
};

/// Addresses with the same hint are mostly of one province: each validator keeps those that it used, so that
/// those who judge with several should give each of them its hints. Reads no table.
[[nodiscard]] AMBREL_EXPORT std::size_t provinceHint(const GivenAddress& given);

} // namespace ambrel
