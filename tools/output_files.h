// The files that an order writes, beside those that it reads.
#pragma once

#include <string>
#include <vector>

namespace ambcp {

struct NamedOutput {
    std::string name; // as errors call it: "--informe"
    std::string file; // empty: standard output
};

/// Nothing is written over what is read, over a table or an undo file, nor twice to one file. `inputs`: "-"
/// for standard input. Errors: Failure.
void requireOtherFiles(const std::vector<std::string>& inputs, const std::vector<NamedOutput>& outputs);

} // namespace ambcp
