// Programs of others that read our tables. Where a machine lacks them the tests skip themselves.
#pragma once

#include <string>
#include <vector>

namespace dbase::test {

/// The complaint of the page-by-page check of tables with their index, which wants the Perl reader; empty
/// when it finds the table right.
[[nodiscard]] std::string verifierComplaint(const std::string& tableFile, bool isStrict);

/// Perl with the module DBD::XBase.
[[nodiscard]] bool hasPerlReader();
/// The lines that a Perl script prints, given its arguments.
[[nodiscard]] std::vector<std::string> runPerl(const std::string& script,
                                               const std::vector<std::string>& arguments);

} // namespace dbase::test
