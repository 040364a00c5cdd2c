// The same addresses in a file, validated by the real `ambcp validar`.
#include "country/Country.h"

#include <fstream>
#include <set>

#include "dbase/dbf/codepage.h"
#include "loading/csv.h"
#include "support/TemporaryFolder.h"

namespace country_tests {
namespace {

class ValidatedFiles : public Country {
protected:
    enum class Names { Stored, Whole };

    /// Writes the addresses as a file, and adds the answers to the score. `names`: of streets, as the tables
    /// or as the office has them.
    void validate(const std::vector<Question>& asked, bool withCodes, Score& score,
                  Names names = Names::Stored) {
        const auto quoted = [](const std::string& ansi) {
            return '"' + dbase::CodePage::windows1252().toUtf8(ansi) + '"';
        };
        std::ofstream file(folder / "direcciones.csv");
        file << "TIPO,VIA,NUMERO,CODPOSTAL,MUNICIPIO,PROVINCIA\n";
        for (const Question& one : asked) {
            file << one.type << ',' << quoted(names == Names::Whole ? one.wholeName : one.street) << ','
                 << one.number << ',' << (withCodes ? *one.postalCodes.begin() : "") << ','
                 << quoted(one.municipality) << ',' << one.province << '\n';
        }
        file.close();
        ambcp("validar " + tables() + ' ' + folder / "direcciones.csv" + " --salida " +
              folder / "validadas.csv" + " 2>&1");
        loading::CsvReader csv(loading::fileSource(folder / "validadas.csv"), "validadas.csv");
        static_cast<void>(csv.next());
        std::map<std::string, std::size_t> at;
        for (std::size_t i = 0; i < csv.fields().size(); ++i) {
            at[std::string(csv.fields()[i].text)] = i;
        }
        for (const Question& one : asked) {
            ASSERT_TRUE(csv.next());
            const auto field = [&](const char* name) { return ansi(csv.fields()[at.at(name)].text); };
            score.add(one, {settled.contains(field("VEREDICTO")), field("COD_INE_V"), field("TIPO_V"),
                            field("VIA_V"), field("CODPOSTAL_V")});
        }
    }

    /// Those whose municipality a file can name.
    [[nodiscard]] static std::vector<Question> nameable() {
        std::vector<Question> asked = sample();
        std::erase_if(asked, [](const Question& question) { return !isNameUnique(question); });
        return asked;
    }

    TemporaryFolder folder;

private:
    static std::string ansi(std::string_view utf8) {
        return dbase::CodePage::windows1252().fromUtf8(utf8).value();
    }
    inline static const std::set<std::string> settled = {"CORRECTA", "COMPLETADA", "CORREGIDA"};
};

TEST_F(ValidatedFiles, AreRightWithoutPostalCodes) {
    Score score;
    validate(nameable(), false, score);
    expectRight(score);
}

TEST_F(ValidatedFiles, AreRightWithPostalCodesWhichSettleWhatIsUnclear) {
    std::vector<Question> asked = nameable();
    for (Question& question : asked) {
        question.postalCodes = {*question.postalCodes.begin()};
    }
    Score score;
    validate(asked, true, score);
    expectRight(score);
}

TEST_F(ValidatedFiles, AreRightWithNamesThatTheTablesHaveShortened) {
    std::vector<Question> asked = nameable();
    std::erase_if(asked, [](const Question& question) { return question.kind != Kind::Shortened; });
    EXPECT_GT(asked.size(), 50U);
    for (const bool withCodes : {true, false}) {
        Score score;
        validate(asked, withCodes, score, Names::Whole);
        expectRight(score);
    }
}

} // namespace
} // namespace country_tests
