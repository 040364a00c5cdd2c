// The province of a postal code.
#include "data/MunicipiDM.h"
#include "data/TableScope.h"
#include "dbase/system/error.h"
#include "lookup/LookupTables.h"
#include "lookup/ModuleScope.h"
#include "lookup/RutCodPostales.h"

namespace {

using namespace lookup_tests;

class ProvinceLocation : public LookupTables {
protected:
    /// Moves the cursor to a municipality, in the order of names.
    void standOn(const char* name) {
        cursor.setTag("NOMBRE");
        cursor.open();
        ASSERT_TRUE(cursor.seek({{"NOMBRE", name}}, dbase::SeekMode::Exact));
    }
    QString locate(const QString& postalCode) {
        ambrel::ModuleScope<TDMMunicipi> module(DMMunicipi);
        return LocalizaProvincia(cursor, postalCode, provinceName);
    }

    dbase::Dataset cursor{"DB", "MUNICIPI"};
    QString provinceName = "?";
};

TEST_F(ProvinceLocation, CodeHasThreeCharactersAndTheNameIsTheProvinces) {
    addProvinces({{"008", "BARCELONA"}, {"028", "MADRID (PROVINCIA)"}});
    addMunicipalities({{"28079", "28001", "MADRID", "N", "0"}, {"28084", "28840", "MEJORADA"}});
    standOn("MEJORADA");
    EXPECT_EQ(locate("28001"), "028");
    EXPECT_EQ(provinceName, "MADRID (PROVINCIA)");
}

TEST_F(ProvinceLocation, PrefixWithoutCapitalStillGivesCodeAndProvince) {
    addProvinces({{"008", QStringLiteral("LÉRIDA").toStdString()}});
    addMunicipalities({{"08001", "08630", "ABRERA"}});
    standOn("ABRERA");
    EXPECT_EQ(locate("08630"), "008");
    EXPECT_EQ(provinceName, QStringLiteral("LÉRIDA"));
}

TEST_F(ProvinceLocation, CodeOfAnotherGroupLeavesTheNameOfTheCapital) {
    addProvinces({{"028", "OTRO TERRITORIO", 3}});
    addMunicipalities({{"28079", "28005", "MADRID", "N", "0"}, {"28084", "28001", "MEJORADA"}});
    standOn("MEJORADA");
    EXPECT_EQ(locate("28001"), "028");
    EXPECT_EQ(provinceName, "MADRID");
}

TEST_F(ProvinceLocation, RecordOfGroupOneIsFoundAfterOthersWithItsCode) {
    addProvinces({{"028", "PAIS", 2}, {"028", "TERRITORIO", 3}, {"028", "PROVINCIA", 1}, {"029", "OTRA", 1}});
    addMunicipalities({{"28084", "28840", "MEJORADA"}});
    standOn("MEJORADA");
    EXPECT_EQ(locate("28840"), "028");
    EXPECT_EQ(provinceName, "PROVINCIA");
}

TEST_F(ProvinceLocation, GroupOneOfTheNextCodeIsNotTaken) {
    addProvinces({{"028", "PAIS", 2}, {"029", "OTRA", 1}});
    addMunicipalities({{"28084", "28840", "MEJORADA"}});
    standOn("MEJORADA");
    EXPECT_EQ(locate("28840"), "028");
    EXPECT_EQ(provinceName, "MEJORADA");
}

TEST_F(ProvinceLocation, WithoutCapitalAndProvinceTheNameIsTheCurrentRecords) {
    addMunicipalities({{"28084", "28840", "MEJORADA"}, {"50001", "50001", "ZARAGOZA", "N", "0"}});
    standOn("ZARAGOZA");
    EXPECT_EQ(locate("28840"), "028");
    EXPECT_EQ(provinceName, "ZARAGOZA");
}

TEST_F(ProvinceLocation, IneCodeOfTheCapitalSettlesTheProvince) {
    addProvinces({{"019", "GUADALAJARA"}, {"028", "MADRID"}});
    addMunicipalities({{"28084", "28001", "MEJORADA"}, {"19130", "28002", "GUADALAJARA", "N", "0"}});
    standOn("MEJORADA");
    EXPECT_EQ(locate("28001"), "019");
    EXPECT_EQ(provinceName, "GUADALAJARA");
}

TEST_F(ProvinceLocation, SearchBeginsAtThePostalCode) {
    addMunicipalities({{"19130", "28002", "GUADALAJARA", "N", "0"}, {"28084", "28840", "MEJORADA"}});
    standOn("MEJORADA");
    EXPECT_EQ(locate("28003"), "028") << "the capital lies before";
    EXPECT_EQ(provinceName, "MEJORADA");
}

TEST_F(ProvinceLocation, SearchEndsWithThePrefix) {
    addMunicipalities({{"28084", "28840", "MEJORADA"}, {"50297", "50001", "ZARAGOZA", "N", "0"}});
    standOn("MEJORADA");
    EXPECT_EQ(locate("28900"), "028");
    EXPECT_EQ(provinceName, "MEJORADA");
    EXPECT_EQ(locate("99999"), "099") << "behind the last code";
}

TEST_F(ProvinceLocation, OnlyTheMarkZeroIsACapital) {
    addMunicipalities({{"19130", "28001", "UNA", "N", ""}, {"19131", "28002", "OTRA", "N", "9"}});
    standOn("OTRA");
    EXPECT_EQ(locate("28001"), "028");
    EXPECT_EQ(provinceName, "OTRA");
}

TEST_F(ProvinceLocation, CursorKeepsItsTag) {
    addMunicipalities({{"28079", "28001", "MADRID", "N", "0"}, {"28084", "28840", "MEJORADA"}});
    standOn("MEJORADA");
    static_cast<void>(locate("28001"));
    EXPECT_EQ(cursor.tag(), "NOMBRE");
    cursor.setTag("CODPOSTAL");
    static_cast<void>(locate("28001"));
    EXPECT_EQ(cursor.tag(), "CODPOSTAL");
}

TEST_F(ProvinceLocation, BoundWidgetsAreNotifiedOnceOfTheWholeWalk) {
    std::vector<MunicipalityRow> rows;
    for (int i = 0; i < 50; ++i) {
        rows.push_back({"28084", std::to_string(28100 + i), "M" + std::to_string(i)});
    }
    addMunicipalities(rows);
    standOn("M1");
    std::vector<dbase::DatasetChange> told;
    const auto listening = cursor.listen([&](dbase::DatasetChange change) { told.push_back(change); });
    static_cast<void>(locate("28100"));
    EXPECT_EQ(told, std::vector{dbase::DatasetChange::Order});
}

TEST_F(ProvinceLocation, EmptyTableAndEmptyCodeGiveWhatThereIs) {
    cursor.open();
    EXPECT_EQ(locate("28001"), "028");
    EXPECT_EQ(provinceName, "");
    EXPECT_EQ(locate(""), "0");
    EXPECT_EQ(locate("2"), "02");
}

TEST_F(ProvinceLocation, TextThatTheCodePageCannotHoldMatchesNothing) {
    addMunicipalities({{"28084", "28840", "MEJORADA"}});
    standOn("MEJORADA");
    EXPECT_EQ(locate(QStringLiteral("2Ł840")), QStringLiteral("02Ł"));
    EXPECT_EQ(provinceName, "MEJORADA");
}

TEST_F(ProvinceLocation, MissingProvincesRaiseAndTheTagComesBack) {
    addMunicipalities({{"28084", "28840", "MEJORADA"}});
    standOn("MEJORADA");
    removeTable("PROVIN");
    EXPECT_THROW(static_cast<void>(locate("28840")), dbase::Error);
    EXPECT_EQ(provinceName, "?");
    EXPECT_EQ(cursor.tag(), "NOMBRE");
}

TEST_F(ProvinceLocation, ClosedCursorRaises) {
    EXPECT_THROW(static_cast<void>(locate("28840")), dbase::Error);
    EXPECT_EQ(provinceName, "?");
}

TEST_F(ProvinceLocation, WithoutTheModuleItRaises) {
    addMunicipalities({{"28084", "28840", "MEJORADA"}});
    standOn("MEJORADA");
    EXPECT_THROW(static_cast<void>(LocalizaProvincia(cursor, "28840", provinceName)), dbase::Error);
}

TEST_F(ProvinceLocation, ProvinceTableIsLeftAsItWasFound) {
    addMunicipalities({{"28084", "28840", "MEJORADA"}});
    standOn("MEJORADA");
    ambrel::ModuleScope<TDMMunicipi> module(DMMunicipi);
    static_cast<void>(LocalizaProvincia(cursor, "28840", provinceName));
    EXPECT_FALSE(DMMunicipi->tbProvin.isOpen());
    DMMunicipi->tbProvin.open();
    static_cast<void>(LocalizaProvincia(cursor, "28840", provinceName));
    EXPECT_TRUE(DMMunicipi->tbProvin.isOpen());
}

TEST_F(ProvinceLocation, OrderComesBackWhenTheWorkFails) {
    cursor.setTag("NOMBRE");
    cursor.open();
    try {
        const ambrel::TagScope order(cursor, "COD_INE");
        EXPECT_EQ(cursor.tag(), "COD_INE");
        throw std::runtime_error("work");
    } catch (const std::runtime_error&) {
    }
    EXPECT_EQ(cursor.tag(), "NOMBRE");
}

} // namespace
