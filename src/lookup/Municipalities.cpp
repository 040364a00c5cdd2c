// Municipalities from the lists: always by asking, or only if the name is ambiguous or unknown.
#include <optional>

#include "data/MunicipiDM.h"
#include "data/TableScope.h"
#include "dbase/dataset/go_to.h"
#include "dialogs/MunicipiLista.h"
#include "dialogs/MunicipiListaMJ.h"
#include "dialogs/common/ModalDialog.h"
#include "lookup/ModuleScope.h"
#include "lookup/MunicipalityNames.h"
#include "lookup/ProvinceLocation.h"
#include "lookup/RutCodPostales.h"
#include "services/Ruttb.h"
#include "services/Text.h"

using ambrel::fromWindows1252;
using ambrel::ModuleScope;
using ambrel::TableScope;
using ambrel::toWindows1252;

namespace {

/// The module already in the global, or one for this routine alone.
class SharedModule {
public:
    SharedModule() {
        if (!DMMunicipi) {
            own_.emplace(DMMunicipi);
        }
        module_ = DMMunicipi;
    }
    [[nodiscard]] TDMMunicipi& module() const { return *module_; }

private:
    std::optional<ModuleScope<TDMMunicipi>> own_;
    TDMMunicipi* module_;
};

/// Shows one of the lists; true if the user accepts the row that is then current.
template<class List>
bool isChosenFrom(QWidget* owner, const QString& caption) {
    ambrel::ModalDialog<List> list(owner);
    list->setWindowTitle(caption);
    return list.isAccepted();
}

/// Goes near a text; does nothing for one that the table cannot hold.
void goNear(dbase::Dataset& table, const char* keyField, const QString& value) {
    if (const auto text = toWindows1252(value)) {
        dbase::goToNearest(table, {{keyField, *text}});
    }
}

bool isExactName(const dbase::Field& column, const QString& name) {
    const auto text = toWindows1252(name);
    return text && ambrel::goToName(column, *text);
}

bool isInProvince(TDMMunicipi& tables, const QString& provinceCode) {
    const auto code = toWindows1252(provinceCode);
    return code && ambrel::goToNameInProvince(tables, *code);
}

/// Restricts a table to the records with the current record's name.
void showOnlyName(const dbase::Field& column) {
    const std::string name = column.text();
    TBRango(column.dataset(), {{column.name(), name}}, {{column.name(), name}});
}

} // namespace

bool IMunicipios(QWidget* owner, QString& codIne, QString& postalCode, QString& name, QString& provinceName,
                 QString& provinceCode, QString& municipalityNumber, const QString& tag,
                 const QString& caption) {
    const SharedModule shared;
    TDMMunicipi& tables = shared.module();
    TBIndexa(ambrel::toNearestWindows1252(tag), tables.tbMunicipi);
    const TableScope open(tables.tbMunicipi);
    if (tag == QLatin1String("COD_INE")) {
        goNear(tables.tbMunicipi, "COD_INE", codIne);
    } else if (tag == QLatin1String("CODPOSTAL")) {
        goNear(tables.tbMunicipi, "CODPOSTAL", postalCode);
    } else if (tag == QLatin1String("NOMBRE")) {
        goNear(tables.tbMunicipi, "NOMBRE", name);
    }
    if (!isChosenFrom<TFMunicipiLista>(owner, caption)) {
        return false;
    }

    const std::string chosenCode = tables.tbMunicipiCOD_INE.text();
    const std::string chosenPostalCode = tables.tbMunicipiCODPOSTAL.text();
    const std::string chosenName = tables.tbMunicipiNOMBRE.text();
    const std::string chosenNumber = tables.tbMunicipiCOD_MUN.text();
    const ambrel::Province province =
        ambrel::locateProvince(tables.tbMunicipi, tables.tbProvin, chosenPostalCode);
    codIne = fromWindows1252(chosenCode);
    postalCode = fromWindows1252(chosenPostalCode);
    name = fromWindows1252(chosenName);
    municipalityNumber = fromWindows1252(chosenNumber);
    provinceName = fromWindows1252(province.name);
    provinceCode = fromWindows1252(province.code);
    return true;
}

bool IMunicipiosMJ(QWidget* owner, QString& provinceCode, QString& name, QString& provinceName,
                   const QString& caption) {
    const SharedModule shared;
    TDMMunicipi& tables = shared.module();
    TBIndexa("POBLLITE", tables.tbMunicipiMJ);
    const TableScope open(tables.tbMunicipiMJ);
    goNear(tables.tbMunicipiMJ, "POBLLITE", name);
    if (!isChosenFrom<TFMunicipiListaMJ>(owner, caption)) {
        return false;
    }
    provinceCode = fromWindows1252(tables.tbMunicipiMJPROVCOD.text());
    provinceName = fromWindows1252(tables.tbMunicipiMJNOMBREPROV.text());
    name = fromWindows1252(tables.tbMunicipiMJPOBLLITE.text());
    return true;
}

bool IBuscaMunicipio(QString& name, QString& codIne, QString& postalCode, QString& capital,
                     const QString& caption) {
    ModuleScope<TDMMunicipi> own(DMMunicipi);
    TDMMunicipi& tables = own.module();
    TBIndexa("NOMBRE", tables.tbMunicipi);
    const TableScope open(tables.tbMunicipi);
    const auto takeCurrent = [&] {
        codIne = fromWindows1252(tables.tbMunicipiCOD_INE.text());
        postalCode = fromWindows1252(tables.tbMunicipiCODPOSTAL.text());
        capital = fromWindows1252(tables.tbMunicipiCAPITAL.text());
        name = fromWindows1252(tables.tbMunicipiNOMBRE.text());
    };
    if (isExactName(tables.tbMunicipiNOMBRE, name)) {
        // Deliberate: leaving the list without an answer keeps the first of several municipalities.
        takeCurrent();
        if (!ambrel::isNameOfAnother(tables)) {
            return true;
        }
        showOnlyName(tables.tbMunicipiNOMBRE);
    }
    if (!isChosenFrom<TFMunicipiLista>(nullptr, caption)) {
        return false;
    }
    takeCurrent();
    return true;
}

bool IBuscaMunicipioMJ(QString& name, QString& provinceCode, QString& municipalityCode,
                       const QString& caption, bool range) {
    ModuleScope<TDMMunicipi> own(DMMunicipi);
    TDMMunicipi& tables = own.module();
    TBIndexa("POBLLITE", tables.tbMunicipiMJ);
    const TableScope open(tables.tbMunicipiMJ);
    const auto takeCurrent = [&] {
        provinceCode = fromWindows1252(tables.tbMunicipiMJPROVCOD.text());
        name = fromWindows1252(tables.tbMunicipiMJPOBLLITE.text());
        municipalityCode = fromWindows1252(tables.tbMunicipiMJPOBLCOD.text());
    };
    const QString wanted = name;
    if (isExactName(tables.tbMunicipiMJPOBLLITE, wanted)) {
        if (isInProvince(tables, provinceCode)) {
            takeCurrent();
            return true;
        }
        goNear(tables.tbMunicipiMJ, "POBLLITE", wanted);
        // Deliberate: leaving the list without an answer keeps the first of several municipalities.
        takeCurrent();
        if (!ambrel::isNameOfNext(tables)) {
            return true;
        }
        if (range) {
            showOnlyName(tables.tbMunicipiMJPOBLLITE);
        }
    }
    if (!isChosenFrom<TFMunicipiListaMJ>(nullptr, caption)) {
        return false;
    }
    takeCurrent();
    return true;
}
