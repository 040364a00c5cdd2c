// The controller's operations: each reads its box, calls the piece that does the work, and writes the result
// back.
#include "controller/ClasCodPostales.h"

#include <QLineEdit>

#include "controller/BoxCompletion.h"
#include "controller/MunicipalitySearch.h"
#include "controller/NumberWalk.h"
#include "controller/ProvinceName.h"
#include "controller/StreetSearch.h"
#include "data/CodPostalesDM.h"
#include "services/EventGuard.h"
#include "services/Mensaje.h"
#include "services/Rnumcad.h"
#include "services/Ruttb.h"
#include "services/TagProperty.h"
#include "services/Text.h"

using ambrel::fromWindows1252;
using ambrel::runGuarded;
using ambrel::setTag;
using ambrel::tagOf;
using ambrel::toWindows1252;

namespace {

void orderBy(const char* tag, dbase::Dataset& table) {
    if (table.tag() != tag) {
        TBIndexa(tag, table);
    }
}

bool wantsMunicipalityList() {
    return Mensaje_SiNo(QStringLiteral("¿Desea ver la lista de municipios actuales?"),
                        QStringLiteral("ATENCIÓN"), QStringLiteral("Atención")) == answeredYes;
}

} // namespace

QString LocalizaProvincia(const QString& codPostal) {
    const auto postalCode = toWindows1252(codPostal);
    return postalCode ? fromWindows1252(ambrel::provinceName(*postalCode)) : QString();
}

TClassCodPostales::TClassCodPostales(QObject*) : DM(std::make_unique<TDMCodPostales>()) {
    TBIndexa("NOMBRE", DM->tbMunicipi);
    DM->tbMunicipi.open();
    TBIndexa("VIA", DM->tbPostal);
    DM->tbPostal.open();
}

TClassCodPostales::~TClassCodPostales() {
    DM->tbMunicipi.close();
    DM->tbPostal.close();
}

QString TClassCodPostales::space(int count) {
    return count > 0 ? QString(count, QLatin1Char(' ')) : QString();
}

void TClassCodPostales::OrdenaPorNombreMunicipi() { orderBy("NOMBRE", DM->tbMunicipi); }

void TClassCodPostales::OrdenaPorCodIneMunicipi() { orderBy("COD_INE", DM->tbMunicipi); }

void TClassCodPostales::OrdenaPorCodPostalMunicipi() { orderBy("CODPOSTAL", DM->tbMunicipi); }

bool TClassCodPostales::BuscaPorNombreMunicipi(const QString& value, bool exact) {
    return searchMunicipality("NOMBRE", value, exact);
}

bool TClassCodPostales::BuscaPorCodIneMunicipi(const QString& value, bool exact) {
    return searchMunicipality("COD_INE", value, exact);
}

bool TClassCodPostales::BuscaPorCodPostalMunicipi(const QString& value, bool exact) {
    return searchMunicipality("CODPOSTAL", value, exact);
}

bool TClassCodPostales::searchMunicipality(const char* field, const QString& value, bool exact) {
    const auto text = toWindows1252(value);
    return text && TBBusca(DM->tbMunicipi, {{field, *text}}, exact);
}

bool TClassCodPostales::BuscaEnMunicipi(const QString& value, bool exact) {
    const auto text = toWindows1252(value);
    return text && ambrel::findMunicipality(*DM, *text, exact);
}

void TClassCodPostales::KeyUpMunicipi(QLineEdit* sender, std::uint16_t& key, Qt::KeyboardModifiers) {
    if (!sender || !ambrel::completesMunicipality(key)) {
        return;
    }
    runGuarded([&] {
        const auto edited = ambrel::editedText(*sender);
        showCompletion(*sender, edited ? ambrel::completeMunicipality(*DM, *edited) : std::nullopt);
    });
}

void TClassCodPostales::ExitMunicipi(QLineEdit* sender, QString& province, QString& postalCode, bool ask) {
    if (!sender) {
        return;
    }
    runGuarded([&] {
        if (sender->text().trimmed().isEmpty()) {
            setTag(*sender, 0);
        } else if (tagOf(*sender) == 0 && ask && wantsMunicipalityList() && BuscarMunicipios()) {
            sender->setText(fromWindows1252(DM->tbMunicipiNOMBRE.view()));
            setTag(*sender, DM->tbMunicipiCOD_INE.integer());
        }
        if (tagOf(*sender) == 0) {
            return;
        }
        // Deliberate: an empty text stays empty; the host passes some text to request a value.
        if (!province.isEmpty()) {
            province = fromWindows1252(ambrel::provinceName(DM->tbMunicipiCODPOSTAL.text()));
        }
        if (const auto only = ambrel::onlyPostalCode(*DM); only && !postalCode.isEmpty()) {
            postalCode = fromWindows1252(*only);
        }
    });
}

void TClassCodPostales::OrdenaPorViaPostal() { orderBy("VIA", DM->tbPostal); }

bool TClassCodPostales::BuscaEnPostal(const QString& street, const QString& type, bool exact) {
    return DM->tbPostal.tag() == "VIA" && BuscaPorViaPostal(street, type, exact);
}

bool TClassCodPostales::BuscaPorViaPostal(const QString& street, const QString& type, bool exact) {
    const auto name = toWindows1252(street);
    const auto code = toWindows1252(type);
    return name && code && ambrel::findStreet(*DM, *name, *code, exact);
}

void TClassCodPostales::KeyUpDireccionPostal(QLineEdit* sender, std::uint16_t& key, Qt::KeyboardModifiers,
                                             const QString& type) {
    if (!sender || !ambrel::completesStreet(key)) {
        return;
    }
    runGuarded([&] {
        const auto edited = ambrel::editedText(*sender);
        const auto code = toWindows1252(type);
        showCompletion(*sender, edited && code ? ambrel::completeStreet(*DM, *edited, *code) : std::nullopt);
    });
}

void TClassCodPostales::ExitNumeroPostal(QLineEdit* sender, dbase::Field* postalCodeField) {
    if (sender) {
        exitNumber(*sender, postalCodeField, ambrel::walkToNumber);
    }
}

void TClassCodPostales::ExitNumeroPostal_(QLineEdit* sender, dbase::Field* postalCodeField) {
    if (sender) {
        exitNumber(*sender, postalCodeField, ambrel::walkToNumberWithoutType);
    }
}

void TClassCodPostales::exitNumber(const QLineEdit& box, dbase::Field* postalCodeField, NumberWalk walk) {
    runGuarded([&] {
        const int number = Cad_Int(toWindows1252(box.text()).value_or(std::string()));
        if (walk(*DM, number) && postalCodeField) {
            postalCodeField->setText(DM->tbPostalCODPOSTAL.text());
        }
    });
}

void TClassCodPostales::SituaPrimerViaMunicipio(const QString& codIne, const QString& street,
                                                const QString& type) {
    const auto code = toWindows1252(codIne);
    const auto name = toWindows1252(street);
    const auto typeCode = toWindows1252(type);
    if (code && name && typeCode) {
        ambrel::goToStreetOfMunicipality(*DM, *code, *name, *typeCode);
    }
}
