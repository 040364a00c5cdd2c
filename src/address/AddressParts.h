// The parts of an address.
#pragma once

#include <string>

namespace ambrel {

/// The parts of an address as they were written; empty where nothing is known. Texts in Windows-1252.
struct AddressParts {
    std::string type;   // the word for the kind of street: "C/", "Avda."
    std::string street; // its name: "de Alcalá"
    /// "12"; "KM 12,5" on a road; "S/N" if the text says that there is none.
    std::string number;
    std::string numberSuffix; // a letter, or "BIS" and the like; in capitals
    std::string numberEnd;    // of a range: "14" of "12-14"
    std::string floor;        // "3º B", "portal 3, bajo dcha."
    std::string rest;         // everything else; nothing is dropped
    std::string postalCode, municipality, province;

    friend bool operator==(const AddressParts&, const AddressParts&) = default;
};

} // namespace ambrel
