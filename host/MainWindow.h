// The demo host's window: one customer with his address, and the commands to move between customers.
#pragma once

#include <QMainWindow>
#include <QPointer>
#include <QString>
#include <cstdint>
#include <memory>

class QLabel;
class QPushButton;
class TClassCodPostales;

namespace ambrel {
class AddressBoxes;
class RecordBinding;
struct JudgedAddress;
} // namespace ambrel

namespace host {

class AddressForm;
class AddressPreview;
class AuditWindow;
class ValidationWindow;
struct HostTable;

class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    /// Opens the customers of a database. Errors: dbase::Error for tables that cannot be opened.
    explicit MainWindow(const QString& database, QWidget* parent = nullptr);
    ~MainWindow() override;

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    enum class Step { Previous, Next };

    void wire();
    void layOut();
    QWidget* header();
    QWidget* commands();
    QPushButton* command(const char* objectName, const QString& text, const QString& shortcut,
                         void (MainWindow::*action)());

    void goToPrevious() { move(Step::Previous); }
    void goToNext() { move(Step::Next); }
    void move(Step step);
    void startNew();
    void save();
    void undo();
    void validateFile();
    void auditTables();
    /// Shows an address of a file in a new row, which only the user saves.
    void showInNewRow(const ambrel::JudgedAddress& address, std::uint64_t fileRow);

    /// Settles the box being typed in; false if the user wants to keep unsaved changes.
    [[nodiscard]] bool mayLeaveRow();
    /// Asks whether unsaved changes may be discarded.
    [[nodiscard]] bool mayDiscard();
    void dropPendingRow();
    void showState();
    /// Shows the result of a command below the form.
    void report(const QString& text);

    std::unique_ptr<HostTable> table_;
    std::unique_ptr<TClassCodPostales> controller_;
    AddressForm* form_;
    ambrel::RecordBinding* binding_;
    ambrel::AddressBoxes* address_;
    AddressPreview* preview_ = nullptr;
    QLabel* state_ = nullptr;
    QLabel* message_ = nullptr;
    QPushButton* undo_ = nullptr;
    QPointer<ValidationWindow> validation_; // null while it is closed
    QPointer<AuditWindow> audit_;           // likewise
};

} // namespace host
