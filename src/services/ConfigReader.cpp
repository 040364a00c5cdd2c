// The INI file's sections, keys and values.
#include "services/ConfigReader.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <optional>
#include <sstream>

#include "dbase/dbf/codepage.h"
#include "dbase/system/error.h"
#include "dbase/system/names.h"
#include "dbase/system/quoted.h"
#include "dbase/system/trim.h"
#include "services/FileStart.h"

namespace ambrel {
namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::size_t largestFile = std::size_t{1} << 20;

// Other control characters are not taken off: they are refused wherever they stand.
bool isWhite(char c) { return c == ' ' || c == '\t' || c == '\r'; }

std::string trimmed(std::string_view text) { return std::string(dbase::trimmed(text, isWhite)); }

bool isControl(char c) { return (static_cast<unsigned char>(c) < ' ' && c != '\t') || c == '\x7F'; }

class Reader {
public:
    explicit Reader(const std::string& path) : path_(path) {}

    ConfigValues read() {
        std::string reason;
        const std::optional<std::string> content = fileStart(path_, largestFile + 1, &reason);
        if (!content) {
            throw dbase::Error(dbase::ErrorCode::NotFound, path_,
                               "No se puede leer la configuración: " + reason);
        }
        if (content->size() > largestFile) {
            throw dbase::Error(dbase::ErrorCode::BadValue, path_,
                               "El fichero es demasiado grande para una configuración");
        }
        std::istringstream lines(*content);
        std::string text;
        while (std::getline(lines, text)) {
            ++line_;
            if (line_ == 1 && text.starts_with(byteOrderMark)) {
                text.erase(0, byteOrderMark.size());
            }
            readLine(trimmed(text));
        }
        if (values_.alias && !values_.folder) {
            fail("hay un Alias sin su Carpeta");
        }
        return values_;
    }

private:
    void readLine(const std::string& line) {
        if (line.empty() || line.front() == ';' || line.front() == '#') {
            return;
        }
        // A control character would cut a path short, or end a line of a request.
        if (std::ranges::any_of(line, isControl)) {
            fail("hay un carácter de control");
        }
        if (line.front() == '[') {
            if (line.back() != ']') {
                fail("falta el corchete de cierre de la sección");
            }
            section_ = trimmed(std::string_view(line).substr(1, line.size() - 2));
            return;
        }
        const std::size_t equals = line.find('=');
        if (equals == std::string::npos) {
            fail("se esperaba clave=valor");
        }
        setValue(trimmed(line.substr(0, equals)), trimmed(line.substr(equals + 1)));
    }

    void setValue(const std::string& key, const std::string& value) {
        const auto is = [&](const char* section, const char* name) {
            return dbase::sameName(section_, section) && dbase::sameName(key, name);
        };
        if (is("BaseDeDatos", "Alias")) {
            values_.alias = alias(value);
        } else if (is("BaseDeDatos", "Carpeta")) {
            values_.folder = folder(value);
        } else if (is("Provincia", "Codigo")) {
            values_.province = number(value);
        } else if (is("Provincia", "Nombre")) {
            values_.provinceName = text(value);
        } else if (is("Provincia", "NombreEnVias")) {
            values_.provinceOfStreets = text(value);
        } else if (is("Municipio", "Codigo")) {
            values_.municipality = number(value);
        } else if (is("Municipio", "Nombre")) {
            values_.municipalityName = text(value);
        } else if (is("Opciones", "EntidadesMenores")) {
            values_.minorEntities = choice(value);
        } else if (is("Opciones", "AsegurarEnDisco")) {
            values_.securesOnDisk = choice(value);
        } else if (is("Callejero", "Servidor")) {
            values_.directoryServer = address(value);
        } else if (is("Callejero", "Accion")) {
            values_.actionPrefix = address(value);
        } else if (is("Callejero", "EspacioDeNombres")) {
            values_.xmlNamespace = address(value);
        } else {
            fail("clave desconocida: " + dbase::inQuotes("[" + section_ + "] " + key));
        }
    }

    [[nodiscard]] std::string text(const std::string& value) const {
        if (const auto bytes = dbase::CodePage::windows1252().fromUtf8(value)) {
            return *bytes;
        }
        fail("el texto no es UTF-8 o tiene letras que las tablas no admiten: " + dbase::inQuotes(value));
    }

    [[nodiscard]] std::string alias(const std::string& value) const {
        if (value.empty()) {
            fail("falta el nombre de la base de datos");
        }
        return text(value);
    }

    [[nodiscard]] std::string folder(const std::string& value) const {
        if (value.empty()) {
            fail("falta la carpeta");
        }
        const std::filesystem::path own = std::filesystem::absolute(path_).parent_path();
        return (own / value).lexically_normal().string();
    }

    [[nodiscard]] std::string address(const std::string& value) const {
        if (!value.starts_with("http://") && !value.starts_with("https://")) {
            fail("se esperaba una dirección que empiece por http:// o https://: " + dbase::inQuotes(value));
        }
        return value;
    }

    [[nodiscard]] int number(const std::string& value) const {
        int result = 0;
        const char* const end = value.data() + value.size();
        const auto [rest, error] = std::from_chars(value.data(), end, result);
        if (error != std::errc() || rest != end || result < 0) {
            fail("se esperaba un número: " + dbase::inQuotes(value));
        }
        return result;
    }

    [[nodiscard]] bool choice(const std::string& value) const {
        if (dbase::sameName(value, "si") || value == "sí" || value == "Sí") {
            return true;
        }
        if (!dbase::sameName(value, "no")) {
            fail("se esperaba si o no: " + dbase::inQuotes(value));
        }
        return false;
    }

    [[noreturn]] void fail(const std::string& text) const {
        throw dbase::Error(dbase::ErrorCode::BadValue, path_, "línea " + std::to_string(line_) + ": " + text);
    }

    std::string path_;
    ConfigValues values_;
    std::string section_;
    int line_ = 0;
};

} // namespace

ConfigValues readConfig(const std::string& path) { return Reader(path).read(); }

} // namespace ambrel
