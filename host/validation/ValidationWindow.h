// The window that validates a file of addresses.
#pragma once

#include <QDialog>
#include <QElapsedTimer>
#include <QTimer>
#include <cstdint>
#include <memory>

#include "host/validation/ValidationJob.h"

class QComboBox;
class QDoubleSpinBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QTabWidget;
class QTableView;

namespace host {

class ColumnGrid;
class UnsettledModel;
class VerdictChart;

/// Two pages: what to read and write, and what came out. The window may stay open beside the form. Closing
/// it cancels a run.
class ValidationWindow : public QDialog {
    Q_OBJECT
public:
    ValidationWindow();
    ~ValidationWindow() override;

    void reject() override;

Q_SIGNALS:
    /// The user wants to see an address of the file in the form.
    void addressChosen(const ambrel::JudgedAddress& address, std::uint64_t row);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    QWidget* filePage();
    QWidget* resultPage();
    QWidget* commands();
    QLineEdit* fileBox(QGridLayout& grid, const char* objectName, const QString& label, const QString& button,
                       void (ValidationWindow::*choose)());

    void chooseInput();
    void chooseOutput();
    void chooseReport();
    void inputChanged();
    void preview();
    void judgeColumns();
    void showProblem(const QString& problem);
    [[nodiscard]] ambrel::AddressFileOptions options() const;

    void start();
    [[nodiscard]] bool mayStart();
    void cancel();
    [[nodiscard]] bool isRunning() const { return job_ != nullptr; }
    void follow(const ValidationNews& news);
    void finish(const ValidationNews& news, const QString& error);
    void showProgress(const ValidationNews& news);
    void refillFilter(const ambrel::AddressFileTotals& totals);
    void showState();
    void takeCurrent();

    QTabWidget* pages_;
    QLineEdit *input_, *output_, *report_;
    QDoubleSpinBox* threshold_;
    ColumnGrid* columns_;
    QLabel *format_, *problem_;
    QProgressBar* bar_;
    QLabel* progress_;
    VerdictChart* chart_;
    QComboBox* filter_;
    QTableView* list_;
    UnsettledModel* rows_;
    QLabel* kept_;
    QPushButton *start_, *cancel_, *take_;

    QTimer later_; // until the file that is being typed is read
    bool isReadable_ = false;
    QElapsedTimer elapsed_;
    std::unique_ptr<ValidationJob> job_; // null while nothing runs
};

} // namespace host
