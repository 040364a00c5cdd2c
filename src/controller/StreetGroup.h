// Streets that are stored together.
#pragma once

#include <optional>

#include "controller/StreetKeyAllocation.h"
#include "dbase/table/write_scope.h"

class TClassCodPostales;

namespace ambrel {

/// During its lifetime the controller's AceptarVia keeps accepted streets in memory, where its tables show
/// them, and lets dbase::Error pass; a SilentAbort without a message means that another workstation is
/// allocating keys. For rows in close succession only, never around a message: nobody else can use the table.
/// If anything fails, abandon the group and accept its rows one by one.
class StreetGroup {
public:
    /// Errors: dbase::Error.
    explicit StreetGroup(TClassCodPostales& controller);
    /// Drops what commit() has not stored.
    ~StreetGroup();
    StreetGroup(const StreetGroup&) = delete;
    StreetGroup& operator=(const StreetGroup&) = delete;

    /// Whether others have waited long enough: then commit and begin another group.
    [[nodiscard]] bool isDue() const { return scope_.isDue(); }
    /// Stores all its streets, or none. Errors: dbase::Error.
    void commit() { scope_.commit(); }

    /// For the controller: posts the pending new row of its streets under a free key.
    void post(dbase::Durability durability);

private:
    TClassCodPostales& controller_;
    dbase::WriteScope scope_;
    std::optional<StreetKeyAllocation> keys_; // from the first new street on
};

} // namespace ambrel
