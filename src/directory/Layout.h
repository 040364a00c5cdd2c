// The layouts of the official files: what a file is, found from its name and its lines.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace ambrel::directory {

/// What the lines of a file describe.
enum class FileKind {
    Stretches,     // TRAM: stretches of numbers, with their postal codes
    Streets,       // VIAS
    PseudoStreets, // PSEU: places addressed without a street
    Units,         // UP: population units
    Sections       // SECC: census sections, which no address needs
};

/// A kind of file in one of its layouts.
struct Layout {
    FileKind kind = FileKind::Stretches;
    bool repeatsName = false; // streets and pseudo streets since the edition of July 2025

    friend bool operator==(const Layout&, const Layout&) = default;
};

/// "tramos", "vías", "seudovías", "unidades de población", "secciones".
[[nodiscard]] const char* kindName(FileKind kind);

/// How many lines of a file are enough to recognise its layout.
inline constexpr std::size_t linesToRecognise = 500;

/// The kind that a file's name says, letter case ignored: TRAM..., VIAS..., PSEU..., UP..., SECC...
[[nodiscard]] std::optional<FileKind> kindOfName(std::string_view fileName);

/// The layout that most of a file's first lines follow, among those of the kind that its name says, if it
/// says one. Null if fewer than half follow any.
[[nodiscard]] std::optional<Layout> recognise(std::string_view fileName, std::span<const std::string> lines);

/// The date to which an edition refers, as AAAA-MM-DD, from the name of a file or of the ZIP that holds it;
/// empty if it says none.
[[nodiscard]] std::string editionOfName(std::string_view fileName);

} // namespace ambrel::directory
