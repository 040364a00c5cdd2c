// A file of invented customers through ambcp validar, against the truth about them.
#include "AmbcpTest.h"

#include <algorithm>

#include "dbase/dbf/codepage.h"
#include "loading/csv.h"
#include "loading/text_encoding.h"
#include "tools/customers/InventedCustomers.h"

namespace ambcp::test {
namespace {

enum Column { Verdict, Confidence, IneCode, Town, Province, Type, Street, Number, Rest, PostalCode };
constexpr std::size_t addedColumns = 12;

class AmbcpCustomers : public AmbcpTest {
protected:
    /// What the program adds to each row of a file.
    [[nodiscard]] std::vector<std::vector<std::string>> addedTo(const std::string& bytes) const {
        folder.write("clientes.csv", bytes);
        const Outcome run = ambcp({"validar", "datos", "clientes.csv", "--salida", "resultado.csv"});
        EXPECT_EQ(run.exitCode, 0) << run.errors;
        const std::string result = content("resultado.csv");
        loading::CsvReader csv(
            loading::decoded(loading::textSource(result), loading::TextEncoding::Windows1252, "resultado"),
            "resultado", ';');
        std::vector<std::vector<std::string>> rows;
        while (csv.next()) {
            auto& row = rows.emplace_back();
            for (const loading::CsvField& field : csv.fields().last(addedColumns)) {
                row.emplace_back(field.text);
            }
        }
        return rows;
    }
};

TEST_F(AmbcpCustomers, EveryRowGetsItsVerdictAndWhatIsSettledIsRight) {
    done({"crear", "datos", "--muestra"});
    std::vector<customers::Customer> truths;
    customers::InventedCustomers invented(7);
    std::string file = customers::headingLine();
    for (int i = 0; i < 400; ++i) {
        truths.push_back(invented.next());
        file += customers::rowOf(truths.back());
    }
    const auto rows = addedTo(dbase::CodePage::windows1252().fromUtf8(file).value());
    ASSERT_EQ(rows.size(), truths.size() + 1);
    EXPECT_EQ(rows.front().at(Verdict), "VEREDICTO");
    std::size_t settled = 0;
    for (std::size_t i = 0; i < truths.size(); ++i) {
        const std::vector<std::string>& row = rows.at(i + 1);
        const std::string& verdict = row.at(Verdict);
        if (verdict == "CORRECTA" || verdict == "COMPLETADA" || verdict == "CORREGIDA") {
            ++settled;
            EXPECT_EQ(row.at(IneCode), truths[i].ineCode) << customers::rowOf(truths[i]);
            EXPECT_EQ(row.at(Street), truths[i].street) << customers::rowOf(truths[i]);
            EXPECT_EQ(row.at(PostalCode), truths[i].postalCode) << customers::rowOf(truths[i]);
        } else if (truths[i].fault == customers::Fault::BrokenRow ||
                   truths[i].fault == customers::Fault::Empty) {
            EXPECT_EQ(verdict, truths[i].verdicts);
        }
    }
    EXPECT_GT(settled, truths.size() * 2 / 3);
}

} // namespace
} // namespace ambcp::test
