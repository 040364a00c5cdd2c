// Provinces: of a postal code, or chosen by the user.
#include "data/MunicipiDM.h"
#include "dbase/system/error.h"
#include "dialogs/ProvList.h"
#include "dialogs/common/ModalDialog.h"
#include "lookup/ProvinceLocation.h"
#include "lookup/RutCodPostales.h"
#include "services/Confamb.h"
#include "services/Text.h"

using ambrel::fromWindows1252;

QString LocalizaProvincia(dbase::Dataset& municipalities, const QString& postalCode, QString& provinceName) {
    if (!DMMunicipi) {
        throw dbase::Error(dbase::ErrorCode::BadState, {},
                           "no hay módulo de municipios con el que localizar la provincia");
    }
    const auto code = ambrel::toWindows1252(postalCode);
    if (!code) {
        provinceName = fromWindows1252(municipalities.field("NOMBRE").text());
        return QLatin1Char('0') + postalCode.left(2);
    }
    const ambrel::Province province = ambrel::locateProvince(municipalities, DMMunicipi->tbProvin, *code);
    provinceName = fromWindows1252(province.name);
    return fromWindows1252(province.code);
}

int SeleccionaProvincia(QString& name, int& group, const QString& caption, const QString& heading,
                        int initialCode) {
    constexpr int noGroup = 0;
    ambrel::ModalDialog<TFProvList> list(nullptr);
    list->TProvin.open();
    list->Configura(caption, heading, initialCode, group);
    if (list.isAccepted()) {
        group = list->chosenGroup();
        name = list->chosenName();
        return list->chosenCode();
    }
    group = noGroup;
    name = fromWindows1252(Config.GetProvin2());
    return Config.GetProvin();
}
