// Any bytes as a municipality's file, and as the texts that its readers split.
#include "Trial.h"
#include "data/TableDefinitions.h"
#include "import/MunicipalityFile.h"
#include "services/Rnumcad.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const auto streets = ambrel::readMunicipalityText(text, [](const std::string& name) {
        trial::require(name == UpperCase(name));
        return name.substr(0, 2);
    });
    for (const ambrel::ImportedStreet& street : streets) {
        trial::require(street.name.size() <= ambrel::streetNameWidth && street.postalCode.size() <= 45);
        trial::require(street.oddFirst >= 0 && street.oddLast >= 0 && street.evenFirst >= 0 &&
                       street.evenLast >= 0);
    }
    int oddFirst = 0, oddLast = 0, evenFirst = 0, evenLast = 0;
    ambrel::ExtraeNumeracion(text, oddFirst, oddLast, evenFirst, evenLast);
    const int number = Cad_Int(text);
    trial::require(Cad_Int(Int_Cad(number)) == number);
    trial::require(StrLeft(text, number).size() + StrRight(text, number).size() <= 2 * size);
    if (number < 1000) {
        trial::require(number <= 0 || Espacios(text, number).size() == static_cast<std::size_t>(number));
    }
    return 0;
}
