// Output that is never left within a line.
#pragma once

#include <string>
#include <string_view>

namespace ambcp {

/// A file, or standard output, that receives whole lines.
class LineOutput {
public:
    /// `file`: empty for standard output.
    explicit LineOutput(std::string file) : file_(std::move(file)) {}
    ~LineOutput();
    LineOutput(const LineOutput&) = delete;
    LineOutput& operator=(const LineOutput&) = delete;

    /// Creates the file, or empties it. Errors: Failure.
    void open();
    /// Writes lines; where they do not fit, the file ends before them. Errors: Failure; OutputClosed when the
    /// reader of standard output has gone away.
    void write(std::string_view lines);
    /// Errors: Failure for what could not be kept.
    void close();

private:
    void fail(int problem);

    std::string file_;
    int descriptor_ = -1;
};

/// Whether two paths are one file; empty or "-" stands for standard input or output, as the argument says.
[[nodiscard]] bool areSameFile(const std::string& input, const std::string& output);

} // namespace ambcp
