// Directories of answers kept in a folder.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <pugixml.hpp>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "tools/callejero/CsvRows.h"
#include "tools/callejero/Directory.h"

namespace callejero {
namespace {

namespace fs = std::filesystem;

constexpr const char* provinceList = "provincias.xml";
constexpr const char* municipalityList = "municipios.xml";
constexpr const char* answerSuffix = ".xml";
constexpr const char* indexFile = "indice.csv";

std::optional<std::string> contentOf(const fs::path& file) {
    std::error_code failure;
    if (!fs::is_regular_file(file, failure)) {
        return std::nullopt;
    }
    std::ifstream stream(file, std::ios::binary);
    return std::string{std::istreambuf_iterator<char>(stream), {}};
}

void replaceAll(std::string& text, std::string_view from, std::string_view to) {
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
}

std::string filed(std::string municipality) {
    replaceAll(municipality, "/", "()");
    replaceAll(municipality, "\\", ")(");
    return municipality;
}

std::string unfiled(std::string file) {
    replaceAll(file, "()", "/");
    replaceAll(file, ")(", "\\");
    return file;
}

/// A requested or listed name must not be a path.
bool isPlainName(const std::string& name) {
    return !name.empty() && name != "." && name != ".." &&
           name.find_first_of(std::string_view("/\\\0", 3)) == std::string::npos;
}

/// A folder per province, a file per municipality.
class ProvinceFolders : public Directory {
public:
    explicit ProvinceFolders(fs::path folder) : folder_(std::move(folder)) {}

    std::string provinces() const override {
        if (auto answer = contentOf(folder_ / provinceList)) {
            return *std::move(answer);
        }
        std::vector<Province> provinces;
        for (const fs::directory_entry& entry : fs::directory_iterator(folder_)) {
            if (entry.is_directory()) {
                provinces.push_back({.name = entry.path().filename().string()});
            }
        }
        std::ranges::sort(provinces, {}, &Province::name);
        return provincesAnswer(provinces);
    }

    std::string municipalities(const std::string& province) const override {
        if (!hasProvince(province)) {
            return errorAnswer(Operation::Municipalities, noSuchProvince);
        }
        if (auto answer = contentOf(folder_ / province / municipalityList)) {
            return *std::move(answer);
        }
        Province listed{.name = province};
        for (const fs::directory_entry& entry : fs::directory_iterator(folder_ / province)) {
            if (entry.path().extension() == answerSuffix) {
                listed.municipalities.push_back({.name = unfiled(entry.path().stem().string())});
            }
        }
        std::ranges::sort(listed.municipalities, {}, &Municipality::name);
        return municipalitiesAnswer(listed);
    }

    std::string streets(const std::string& province, const std::string& municipality) const override {
        if (!hasProvince(province)) {
            return errorAnswer(Operation::Streets, noSuchProvince);
        }
        const std::string file = filed(municipality) + answerSuffix;
        if (auto answer = isPlainName(file) ? contentOf(folder_ / province / file) : std::nullopt) {
            return *std::move(answer);
        }
        return errorAnswer(Operation::Streets, noSuchMunicipality);
    }

private:
    [[nodiscard]] bool hasProvince(const std::string& province) const {
        std::error_code failure;
        return isPlainName(province) && fs::is_directory(folder_ / province, failure);
    }

    fs::path folder_;
};

/// Lists in soap/, streets in vias/ under the names in an index.
class IndexedAnswers : public Directory {
public:
    explicit IndexedAnswers(fs::path folder) : folder_(std::move(folder)) {
        readProvinceCodes();
        readIndex();
    }

    std::string provinces() const override {
        return contentOf(folder_ / "soap" / provinceList)
            .value_or(errorAnswer(Operation::Provinces, serverError));
    }

    std::string municipalities(const std::string& province) const override {
        const auto found = codes_.find(province);
        if (found == codes_.end()) {
            return errorAnswer(Operation::Municipalities, noSuchProvince);
        }
        const std::string file = "municipios-" + found->second + answerSuffix;
        if (auto answer = isPlainName(file) ? contentOf(folder_ / "soap" / file) : std::nullopt) {
            return *std::move(answer);
        }
        const Province listed = indexed(province);
        return listed.municipalities.empty() ? errorAnswer(Operation::Municipalities, serverError)
                                             : municipalitiesAnswer(listed);
    }

    std::string streets(const std::string& province, const std::string& municipality) const override {
        if (!codes_.contains(province)) {
            return errorAnswer(Operation::Streets, noSuchProvince);
        }
        const auto found = files_.find({province, municipality});
        if (found == files_.end()) {
            return errorAnswer(Operation::Streets, noSuchMunicipality);
        }
        return (isPlainName(found->second) ? contentOf(folder_ / "vias" / found->second) : std::nullopt)
            .value_or(errorAnswer(Operation::Streets, serverError));
    }

private:
    void readProvinceCodes() {
        pugi::xml_document document;
        document.load_file((folder_ / "soap" / provinceList).c_str());
        for (const pugi::xpath_node& node : document.select_nodes("//*[local-name()='prov']")) {
            codes_[node.node().child_value("np")] = node.node().child_value("cpine");
        }
    }

    /// A province with those municipalities whose streets are in the index.
    [[nodiscard]] Province indexed(const std::string& province) const {
        Province listed{.name = province};
        for (auto at = files_.lower_bound({province, ""}); at != files_.end() && at->first.first == province;
             ++at) {
            listed.municipalities.push_back({.name = at->first.second});
        }
        return listed;
    }

    void readIndex() {
        const auto text = contentOf(folder_ / "vias" / indexFile);
        if (!text) {
            return;
        }
        const auto value = [](const CsvRow& row, const char* column) {
            const auto found = row.find(column);
            if (found == row.end()) {
                throw std::runtime_error(std::string(indexFile) + ": falta un valor de la columna «" +
                                         column + "»");
            }
            return found->second;
        };
        for (const CsvRow& row : csvRows(loading::textSource(*text), indexFile)) {
            files_[{value(row, "provincia"), value(row, "municipio")}] = value(row, "fichero");
        }
    }

    fs::path folder_;
    std::map<std::string, std::string> codes_;                         // by province
    std::map<std::pair<std::string, std::string>, std::string> files_; // by province and municipality
};

} // namespace

std::unique_ptr<const Directory> folderDirectory(const std::string& folder) {
    if (!fs::is_directory(folder)) {
        throw std::runtime_error("no hay carpeta «" + folder + "»");
    }
    if (fs::exists(fs::path(folder) / "soap" / provinceList)) {
        return std::make_unique<IndexedAnswers>(folder);
    }
    return std::make_unique<ProvinceFolders>(folder);
}

} // namespace callejero
