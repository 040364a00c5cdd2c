// Refuses outputs that would destroy something.
#include "tools/output_files.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <string_view>

#include "dbase/system/names.h"
#include "loading/failure.h"
#include "tools/line_output.h"

namespace ambcp {

namespace {

/// Whether something goes by a name that only tables, what completes them, and undo files have, under which a
/// slip of the hand would destroy one.
bool isNamedAsTable(const std::string& file) {
    const std::string extension = dbase::upperName(
        std::filesystem::weakly_canonical(std::filesystem::absolute(file)).extension().string());
    static constexpr std::array<std::string_view, 6> kept{".DBF", ".MDX", ".DBT",
                                                          ".AMJ", ".AMI", ".DESHACER"};
    return std::ranges::find(kept, extension) != kept.end();
}

} // namespace

void requireOtherFiles(const std::vector<std::string>& inputs, const std::vector<NamedOutput>& outputs) {
    for (auto one = outputs.begin(); one != outputs.end(); ++one) {
        if (std::ranges::any_of(inputs,
                                [&](const std::string& input) { return areSameFile(input, one->file); })) {
            throw loading::Failure(one->name + " sería el mismo fichero que la entrada");
        }
        if (!one->file.empty() && isNamedAsTable(one->file)) {
            throw loading::Failure(one->name + " no puede ser " + one->file +
                                   ": es el nombre de una tabla o de un fichero de deshacer");
        }
        for (auto other = outputs.begin(); other != one; ++other) {
            if (!other->file.empty() && areSameFile(other->file, one->file)) {
                throw loading::Failure(one->name + " sería el mismo fichero que " + other->name);
            }
        }
    }
}

} // namespace ambcp
