// Collects and words complaints about a text to be loaded.
#include "loading/load_complaints.h"

#include "dbase/system/counted.h"

namespace loading {

void LoadComplaints::add(std::uint64_t line, const std::string& text) {
    if (told_.size() == mostTold) {
        ++untold_;
        return;
    }
    told_.push_back(name_ + ": línea " + std::to_string(line) + text);
}

std::string LoadComplaints::text() const {
    std::vector<std::string> lines = told_;
    if (!end_.empty()) {
        lines.push_back(end_);
    }
    std::string text;
    for (const std::string& line : lines) {
        text += (text.empty() ? "" : "\n") + line;
    }
    if (untold_ > 0) {
        text += '\n' + name_ + ": y " + dbase::counted(untold_, "error más", "errores más");
    } else if (lines.size() > 1) {
        text += '\n' + name_ + ": hay " + std::to_string(lines.size()) + " errores";
    }
    return text + ". No se ha cargado nada." + (hint_.empty() ? "" : ' ' + hint_);
}

} // namespace loading
