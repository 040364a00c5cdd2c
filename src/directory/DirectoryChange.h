// What an edition of the official directory does to the tables, and what it leaves alone, row by row.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "directory/LoadingProgress.h"
#include "directory/PlaceCode.h"

namespace ambrel::directory {

/// What becomes of a row.
enum class ChangeKind { Comes, Goes, Changes };

/// Bounds of a row of POSTAL: IMPAR_INI, IMPAR_FIN, PAR_INI, PAR_FIN.
using Bounds = std::array<std::uint16_t, 4>;

/// One row of POSTAL that comes, goes or changes, or one of MUNICIPI: its key is 0, and it has no bounds.
/// Texts in Windows-1252; they live as long as the call that brings them. Empty and 0 where there is no such
/// row: before for one that comes, after for one that goes.
struct DirectoryChange {
    ChangeKind kind = ChangeKind::Comes;
    PlaceCode place = 0;
    std::string_view municipality = {};
    std::uint32_t key = 0; // CODIGO1
    std::string_view typeBefore = {}, nameBefore = {}, codeBefore = {};
    Bounds boundsBefore = {};
    std::string_view type = {}, name = {}, code = {};
    Bounds bounds = {};
    // Of one that changes:
    bool isRenamed = false; // its type or its name
    bool hasOtherCode = false, hasOtherRange = false;
};

/// Why a row stays although the edition has another.
enum class ConflictKind {
    ChangedByHand, // it came with an edition, and somebody has changed it
    DeletedByHand, // somebody has deleted it
    OwnStreet,     // a street of the users, or of another import, that shares numbers with an official one
    OwnMunicipality
};

/// A row that stays as the users have it. Texts in Windows-1252; they live as long as the call.
struct DirectoryConflict {
    ConflictKind kind = ConflictKind::ChangedByHand;
    PlaceCode place = 0;
    std::string_view municipality = {};
    std::uint32_t key = 0; // of the row that stays; 0 in MUNICIPI, or if it has no number
    std::string_view name = {};
    std::string_view ours = {}, official = {}; // what the row has, and what the office has; empty for nothing
};

/// What follows a load; each function may be empty.
struct LoadObserver {
    std::function<void(const DirectoryChange&)> change = {};
    std::function<void(const DirectoryConflict&)> conflict = {};
    LoadingProgress progress = {};
};

/// How many rows of a table come, go and change.
struct ChangeCounts {
    std::uint64_t comes = 0, goes = 0, changes = 0;
};

/// Rows of POSTAL of one municipality; conflicts also those of MUNICIPI.
struct MunicipalitySummary {
    std::string name; // Windows-1252
    std::uint64_t comes = 0, goes = 0, changes = 0, conflicts = 0;
};

/// What a load would store, or has stored.
struct LoadSummary {
    std::string previousEdition;          // AAAA-MM-DD, of the latest row there is; empty if there is none
    bool isOlder = false;                 // than that one
    std::string unlikelyLosses;           // rows that go in such numbers that a file may be cut; lines, UTF-8
    std::uint64_t streetRows = 0;         // of POSTAL that the edition has
    ChangeCounts streets, municipalities; // rows of POSTAL and MUNICIPI
    std::uint64_t renamed = 0, otherCode = 0, otherRange = 0; // among the rows of POSTAL that change
    std::uint64_t kept = 0; // rows of the edition not taken, or cut, because of the users', conflicts or not
    std::uint64_t conflicts = 0;
    std::map<PlaceCode, MunicipalitySummary> byMunicipality;        // those that have any of it
    std::map<std::string, std::uint64_t, std::less<>> unknownTypes; // abbreviations, Windows-1252
    std::uint64_t shortenedNames = 0, openedRows = 0;               // of the edition's rows
};

} // namespace ambrel::directory
