// Puts the file in front of an error's text.
#include "dbase/system/error.h"

namespace dbase {

Error::Error(ErrorCode code, std::string file, const std::string& text)
    : std::runtime_error(file.empty() ? text : file + ": " + text), code_(code), file_(std::move(file)) {}

} // namespace dbase
