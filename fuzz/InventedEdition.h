// Bytes as choices, and editions of the official directory made of them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Trial.h"
#include "directory/EditionFiles.h"

namespace trial {

/// One number after another; 0 once the bytes are used up.
class Choices {
public:
    explicit Choices(std::string_view bytes) : bytes_(bytes) {}

    [[nodiscard]] bool areLeft() const { return !bytes_.empty(); }
    /// Below a limit, of at most 256.
    unsigned below(unsigned limit);
    /// A house number: small ones, and those near the end of what four digits hold.
    unsigned houseNumber();
    /// One of a few municipalities, postal codes and names.
    unsigned place();
    unsigned postalCode();
    std::string name();

private:
    std::string_view bytes_;
};

/// The lines of an edition, which become those of the next one.
class InventedEdition {
public:
    /// Adds, doubles, drops or damages a line.
    void amend(Choices& choices);
    /// As files, which the next one to be written overwrites.
    [[nodiscard]] ambrel::directory::EditionFiles write(Choices& choices) const;

private:
    using Lines = std::vector<std::string>;
    [[nodiscard]] std::string stretch(Choices& choices) const;

    std::vector<Lines> files_{4}; // stretches, streets, pseudo streets, units
};

} // namespace trial
