// The window that audits MUNICIPI and POSTAL.
#pragma once

#include <QDialog>
#include <QElapsedTimer>
#include <cstdint>
#include <memory>

#include "host/audit/AuditJob.h"
#include "host/audit/RepairJob.h"

class QLabel;
class QProgressBar;
class QPushButton;
class QTableView;
class TClassCodPostales;

namespace host {

class ClassTotalsModel;
class FindingsModel;

/// Audits as soon as it is shown. The classes above show the totals and filter the findings below. The window
/// may stay open beside the form. Closing it cancels what runs; one that repairs stays until that is
/// reported.
class AuditWindow : public QDialog {
    Q_OBJECT
public:
    AuditWindow();
    ~AuditWindow() override;

    void reject() override;

protected:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    QWidget* findingsPane();
    QWidget* classesPane();
    QWidget* commands();

    void start();
    void cancel();
    [[nodiscard]] bool isRunning() const { return audit_ != nullptr || repair_ != nullptr; }
    void follow(const AuditNews& news);
    void finish(const AuditNews& news, const AuditEnd& end);
    [[nodiscard]] QString summary(const AuditEnd& end) const;
    void filter();
    void showDetail();
    void openCard();
    void saveReport();

    [[nodiscard]] std::optional<ambrel::directory::FindingClass> currentClass() const;
    void planRepair();
    void startRepair(ambrel::directory::FindingClass what, RepairKind kind);
    void finishDryRun(ambrel::directory::FindingClass what, const RepairNews& news);
    void finishRepair(const RepairNews& news, const QString& error);
    void showShare(double share);
    void showState();

    QProgressBar* bar_;
    QLabel *progress_, *kept_, *detail_;
    QTableView *classList_, *list_;
    ClassTotalsModel* classes_;
    FindingsModel* findings_;
    QPushButton *card_, *mend_, *save_, *start_, *cancel_;

    QElapsedTimer elapsed_;
    std::unique_ptr<TClassCodPostales> controller_; // of the cards; null until the first one
    std::unique_ptr<AuditJob> audit_;               // null while none runs
    std::unique_ptr<RepairJob> repair_;             // likewise
    AuditEnd last_;                                 // of the last audit
    QString summary_;                               // likewise
};

} // namespace host
