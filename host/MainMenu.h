// The menus of the host's window.
#pragma once

#include <functional>

class QMainWindow;

namespace ambrel {
class AddressBoxes;
}

namespace dbase {
class Dataset;
}

namespace host {

/// "Listas": the lists of the form's boxes, then every routine that may show a list. "Utilidades": the
/// routines that answer without asking, the validation of a file and the audit of the tables. The record must
/// outlive the window.
void addMenus(QMainWindow& window, ambrel::AddressBoxes& address, dbase::Dataset& record,
              const std::function<void()>& validateFile, const std::function<void()>& auditTables);

} // namespace host
