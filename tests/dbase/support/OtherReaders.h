// Other software that reads our tables. On machines without it the tests skip themselves.
#pragma once

#include <string>
#include <vector>

namespace dbase::test {

/// The complaint of the page-by-page check of tables with their index, which needs the Perl reader; empty
/// when the table is right.
[[nodiscard]] std::string verifierComplaint(const std::string& tableFile, bool isStrict);

/// Whether there is Perl with the module DBD::XBase.
[[nodiscard]] bool hasPerlReader();
/// The lines that a Perl script with these arguments prints.
[[nodiscard]] std::vector<std::string> runPerl(const std::string& script,
                                               const std::vector<std::string>& arguments);

} // namespace dbase::test
