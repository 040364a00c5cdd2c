// TFFichaVia: the checks of what was typed.
#include <gtest/gtest.h>

#include <QTest>

#include "dialogs/StreetCardForm.h"

namespace {

using dbase::DatasetState;

const QString badMunicipality = "No ha especificado la vecindad de la nueva via o no es correcta";
const QString badProvince = "No ha especificado la provincia de la nueva via o no es correcta";
const QString badType = "No ha especificado el tipo de via de la nueva via o no es correcta";
const QString badStreet = "No ha especificado el nombre de la nueva via";
const QString badPostalCode = "No ha especificado el código postal de la nueva via o no es correcta";

class StreetCardChecks : public postal_tests::StreetCardForm {
protected:
    /// Opens the card as a new street that passes every check except for one control's text.
    void openWith(const char* control, const QString& text) {
        openCard(opAlta);
        enter("BBCancelar"); // first, because leaving EVecindad fills in others
        fillIn();
        if (card->findChild<QComboBox*>(QLatin1String(control))) {
            combo(control).setEditText(text);
        } else {
            edit(control).setText(text);
        }
    }
    void accept() { button("BBAceptar").click(); }
    void expectRefused(const QString& message, const std::string& focus) {
        messages.expect(message, "Incorrección de datos");
        accept();
        EXPECT_TRUE(messages.isDone());
        EXPECT_TRUE(card->isVisible());
        EXPECT_EQ(focused(), focus);
        EXPECT_EQ(streets().state(), DatasetState::Insert);
    }
};

TEST_F(StreetCardChecks, EachCheckShowsItsMessageAndGivesItsControlTheFocus) {
    struct Fault {
        const char* control;
        QString text;
        QString message;
    };
    for (const Fault& fault :
         {Fault{"EVecindad", "", badMunicipality}, Fault{"EVecindad", "   ", badMunicipality},
          Fault{"EVecindad", "MADRI", badMunicipality}, Fault{"EVecindad", "madrid", badMunicipality},
          Fault{"CBProvincia", "", badProvince}, Fault{"CBProvincia", "BARCELONA [08]", badProvince},
          Fault{"CBProvincia", "NINGUNA [28]", badProvince}, Fault{"CBProvincia", "日本", badProvince},
          Fault{"CBTipoVia", "", badType}, Fault{"CBTipoVia", "XX", badType},
          Fault{"CBTipoVia", "CALLE", badType}, Fault{"DBEVia", "", badStreet},
          Fault{"DBEVia", "  ", badStreet}, Fault{"DBECodPostal", "", badPostalCode},
          Fault{"DBECodPostal", "2801", badPostalCode}, Fault{"DBECodPostal", "280131", badPostalCode},
          Fault{"DBECodPostal", "08013", badPostalCode}}) {
        SCOPED_TRACE(std::string(fault.control) + ": " + fault.text.toStdString());
        openWith(fault.control, fault.text);
        expectRefused(fault.message, fault.control);
        streets().cancel();
        card.reset();
    }
}

TEST_F(StreetCardChecks, APostalCodeOf4Or6CharactersOrOfAnotherProvinceIsRejected) {
    for (const char* code : {"2801", "280131", "08013"}) {
        openWith("DBECodPostal", "");
        typeInto("DBECodPostal", code);
        expectRefused(badPostalCode, "DBECodPostal");
        EXPECT_EQ(textOf("DBECodPostal"), code) << "nothing typed is lost";
        streets().cancel();
        card.reset();
    }
}

TEST_F(StreetCardChecks, TheFirstFaultIsReported) {
    openCard(opAlta);
    expectRefused(badMunicipality, "EVecindad");
}

TEST_F(StreetCardChecks, EmptyNumbersAreFilledInAlsoWhenACheckFailed) {
    openWith("DBEVia", "");
    for (const char* name : {"DBEImparIni", "DBEImparFin", "DBEParIni", "DBEParFin"}) {
        edit(name).clear();
    }
    edit("DBEParFin").setText("40");
    expectRefused(badStreet, "DBEVia");
    EXPECT_EQ(textOf("DBEImparIni"), "1");
    EXPECT_EQ(textOf("DBEImparFin"), "9999");
    EXPECT_EQ(textOf("DBEParIni"), "2");
    EXPECT_EQ(textOf("DBEParFin"), "40");
    EXPECT_EQ(value("IMPAR_FIN"), "9999");
}

TEST_F(StreetCardChecks, ProvinceAndTypeMayBeGivenByNameAndCodeAlone) {
    openWith("CBTipoVia", " cl ");
    combo("CBProvincia").setEditText("MADRID");
    accept();
    EXPECT_FALSE(card->isVisible());
    EXPECT_EQ(stored("99000004", "TIPO_VIA"), "CL");
    EXPECT_EQ(stored("99000004", "PROVINCIA"), "28");
}

TEST_F(StreetCardChecks, ANumberThatIsNoneOrDoesNotFitIsReportedAndNothingIsLost) {
    for (const auto& [control, text, name] :
         {std::tuple("DBEImparIni", "abc", "Inicio impar"), std::tuple("DBEParFin", "40000", "Fin par")}) {
        openWith(control, text);
        expectRefused(
            QStringLiteral("\"%1\" no es un número válido en %2: escriba uno entero, de -32768 a 32767")
                .arg(text, name),
            control);
        EXPECT_EQ(textOf(control), text);
        EXPECT_EQ(textOf("DBEVia"), "NUEVA");
        edit(control).setText("7");
        accept();
        EXPECT_FALSE(card->isVisible());
        card.reset();
    }
    EXPECT_EQ(stored("99000004", "IMPAR_INI"), "7");
    EXPECT_EQ(stored("99000005", "PAR_FIN"), "7");
}

TEST_F(StreetCardChecks, APastedNameThatTheTableWouldCutOrChangeIsReportedAndNothingIsStored) {
    for (const QString& pasted : {QStringLiteral("RINCON DE LOS ALMENDROS FLORIDOS DE LA UMBRIA ALTA"),
                                  QStringLiteral("NUEVA \u2605")}) {
        openWith("DBEVia", pasted);
        expectRefused(
            QStringLiteral("El nombre de la vía no cabe en la tabla (45 letras, como mucho) o tiene "
                           "signos que la tabla no guarda"),
            "DBEVia");
        EXPECT_EQ(edit("DBEVia").text(), pasted);
        edit("DBEVia").setText("NUEVA");
        accept();
        EXPECT_FALSE(card->isVisible());
        card.reset();
    }
    EXPECT_EQ(stored("99000004", "VIA"), "NUEVA");
}

TEST_F(StreetCardChecks, ABlankTypeIsOneWhereTheTableHasIt) {
    addStreetTypes({{"", "SIN TIPO"}});
    openWith("CBTipoVia", " - SIN TIPO");
    accept();
    EXPECT_FALSE(card->isVisible());
    EXPECT_EQ(stored("99000004", "VIA"), "NUEVA");
    EXPECT_EQ(stored("99000004", "TIPO_VIA"), "");
}

} // namespace
