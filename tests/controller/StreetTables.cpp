// The postal tables with a few municipalities.
#include "controller/StreetTables.h"

#include "dbase/system/error.h"

namespace postal_tests {

StreetTables::StreetTables() {
    addMunicipalities({{"28079", "28001", "MADRID", "N", "0"},
                       {"28010", "28430", "ALPEDRETE", "S", "9"},
                       {"28093", "28491", "NAVACERRADA", "S", "9"},
                       {"08019", "08001", "BARCELONA", "N", "0"}});
}

TDMCodPostales& StreetTables::openIn(const std::string& municipality) {
    tables_.emplace();
    tables_->tbMunicipi.setTag("NOMBRE");
    tables_->tbMunicipi.open();
    tables_->tbPostal.open();
    EXPECT_TRUE(tables_->tbMunicipi.seek({{"NOMBRE", municipality}}, dbase::SeekMode::Exact)) << municipality;
    return *tables_;
}

void StreetTables::goToRow(const std::string& codigo1) { goToStreet(tables_->tbPostal, codigo1); }

std::string StreetTables::currentRow() const { return tables_->tbPostalCODIGO1.text(); }

} // namespace postal_tests
