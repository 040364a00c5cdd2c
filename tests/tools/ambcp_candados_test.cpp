// ambcp candados: whether locks work in a folder.
#include "AmbcpTest.h"

namespace ambcp::test {
namespace {

class AmbcpCandados : public AmbcpTest {};

TEST_F(AmbcpCandados, SaysThatLocksWorkInALocalFolder) {
    const std::string output = done({"candados", "."});
    EXPECT_EQ(output.find("NO"), std::string::npos) << output;
    EXPECT_NE(output.find("sí  otro proceso no puede bloquear lo mismo\n"), std::string::npos) << output;
    EXPECT_NE(output.find("Los bloqueos funcionan"), std::string::npos) << output;
}

TEST_F(AmbcpCandados, RefusesAFolderInWhichItCannotTry) {
    EXPECT_EQ(refused({"candados", "falta"}), "ambcp: no existe la carpeta «falta»\n");
}

} // namespace
} // namespace ambcp::test
