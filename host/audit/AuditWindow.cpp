// Auditing the tables: what the window does. Its layout is in AuditLayout.cpp.
#include "host/audit/AuditWindow.h"

#include <QCloseEvent>
#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTableView>
#include <algorithm>

#include "host/GroupedNumber.h"
#include "host/ShownTime.h"
#include "host/audit/ClassTotalsModel.h"
#include "host/audit/FindingsModel.h"
#include "host/audit/FoundStreet.h"
#include "package/AmbCodPostales.h"
#include "services/EventGuard.h"
#include "services/Mensaje.h"

namespace host {
namespace {

using namespace ambrel::directory;

constexpr int barSteps = 1000;

QString windowTitleText() { return AuditWindow::tr("Revisar las tablas"); }

} // namespace

AuditWindow::~AuditWindow() = default;

void AuditWindow::start() {
    if (isRunning()) {
        return;
    }
    findings_->clear();
    classes_->clear();
    classList_->setCurrentIndex(classes_->index(0, 0));
    filter();
    kept_->hide();
    last_ = {};
    audit_ = std::make_unique<AuditJob>();
    connect(audit_.get(), &AuditJob::progressed, this,
            ambrel::guarded([this](const AuditNews& news) { follow(news); }));
    connect(audit_.get(), &AuditJob::finished, this,
            ambrel::guarded([this](const AuditNews& news, const AuditEnd& end) { finish(news, end); }));
    elapsed_.start();
    progress_->setText(tr("Empieza…"));
    bar_->setRange(0, 0);
    showState();
    cancel_->setFocus();
    audit_->start();
}

void AuditWindow::cancel() {
    if (isRunning()) {
        progress_->setText(tr("Se interrumpe…"));
    }
    if (audit_) {
        audit_->cancel();
    }
    if (repair_) {
        repair_->cancel();
    }
}

void AuditWindow::showShare(double share) {
    bar_->setRange(0, barSteps);
    bar_->setValue(static_cast<int>(share * barSteps));
}

void AuditWindow::follow(const AuditNews& news) {
    findings_->append(news.findings);
    classes_->setCounts(news.counts);
    if (news.total > 0) {
        const double share = static_cast<double>(news.done) / static_cast<double>(news.total);
        const double seconds = static_cast<double>(elapsed_.elapsed()) / 1000;
        showShare(share);
        progress_->setText(tr("%1 de %2; faltan %3 min")
                               .arg(rowsText(news.done), groupedNumber(news.total),
                                    shownTime(seconds * (1 - share) / std::max(share, 0.001))));
    }
}

void AuditWindow::finish(const AuditNews& news, const AuditEnd& end) {
    follow(news);
    audit_.release()->deleteLater(); // it is reporting its end
    last_ = end;
    showShare(end.report ? 1 : 0);
    summary_ = summary(end);
    progress_->setText(summary_);
    const bool isCut = std::ranges::any_of(
        news.counts, [](const auto& counts) { return counts[0] + counts[1] + counts[2] > keptOfEachClass; });
    kept_->setVisible(isCut);
    kept_->setText(isCut
                       ? tr("Se enseñan los %1 primeros hallazgos de cada clase; «ambcp revisar» los escribe "
                            "todos.")
                             .arg(groupedNumber(keptOfEachClass))
                       : QString());
    showState();
    if (findings_->rowCount() > 0) {
        list_->setCurrentIndex(findings_->index(0, 0));
        list_->setFocus();
    } else {
        start_->setFocus();
    }
    if (!end.error.isEmpty()) {
        Mensaje_Error(this, end.error, windowTitleText());
    }
}

QString AuditWindow::summary(const AuditEnd& end) const {
    if (!end.error.isEmpty()) {
        return tr("No se ha terminado: los hallazgos no son todos.");
    }
    if (end.wasCancelled) {
        return tr("Interrumpido: los hallazgos no son todos.");
    }
    const AuditTotals& totals = end.totals;
    const QString block =
        totals.highestUserKey.empty()
            ? tr("El bloque «99» está sin usar.")
            : tr("Bloque «99»: %1, la más alta %2; quedan %3.")
                  .arg(totals.userKeys == 1 ? tr("1 clave")
                                            : tr("%1 claves").arg(groupedNumber(totals.userKeys)),
                       QString::fromStdString(totals.highestUserKey), groupedNumber(totals.keysLeft()));
    return tr("Revisado: %1 de MUNICIPI y %2 de POSTAL, en %3 min. De las vías, %4 en la clave detrás de "
              "otra del mismo nombre. %5")
               .arg(rowsText(totals.municipalityRows), rowsText(totals.streetRows),
                    shownTime(static_cast<double>(elapsed_.elapsed()) / 1000),
                    groupedNumber(totals.hiddenStreets) +
                        (totals.hiddenStreets == 1 ? tr(" va") : tr(" van")),
                    block) +
           (totals.all() == 0 ? tr(" Sin hallazgos.") : QString());
}

std::optional<FindingClass> AuditWindow::currentClass() const {
    const QModelIndex current = classList_->currentIndex();
    return current.isValid() ? classes_->kind(current.row()) : std::nullopt;
}

void AuditWindow::filter() {
    findings_->setFilter(currentClass());
    if (!isRunning() && findings_->rowCount() > 0) {
        list_->setCurrentIndex(findings_->index(0, 0));
    }
    showState();
}

/// The finding as a whole: the list has no room for long ones.
void AuditWindow::showDetail() {
    const QModelIndex current = list_->currentIndex();
    if (!current.isValid()) {
        return detail_->clear();
    }
    const Finding& finding = findings_->finding(current.row());
    const QString key = finding.key.empty() ? QString() : tr(", clave %1").arg(windowText(finding.key));
    const QString proposal =
        finding.proposal.empty() ? QString() : tr(" Propuesta: %1").arg(windowText(finding.proposal));
    detail_->setText(QStringLiteral("%1%2: %3. %4")
                         .arg(windowText(classTitle(finding.kind)), key, windowText(finding.text),
                              windowText(classAdvice(finding.kind))) +
                     proposal);
}

void AuditWindow::showState() {
    const auto kind = currentClass();
    const QModelIndex current = list_->currentIndex();
    start_->setEnabled(!isRunning());
    cancel_->setEnabled(isRunning());
    card_->setEnabled(!isRunning() && current.isValid() && isOfStreet(findings_->finding(current.row())));
    mend_->setEnabled(!isRunning() && last_.report && kind && isRepairable(*kind));
    save_->setEnabled(!isRunning() && last_.report);
    showDetail();
}

void AuditWindow::openCard() {
    if (!card_->isEnabled()) {
        return;
    }
    if (!controller_) {
        controller_ = std::make_unique<TClassCodPostales>(this);
        controller_->Padre = this;
    }
    if (!openStreetCard(findings_->finding(list_->currentIndex().row()), *controller_)) {
        Mensaje_Info(this, tr("La fila ya no es la que se revisó. Revise de nuevo."), windowTitleText());
    }
    list_->setFocus();
}

void AuditWindow::saveReport() {
    const QString path = QFileDialog::getSaveFileName(this, tr("Guardar el informe"),
                                                      QDir::home().filePath(QStringLiteral("revision.html")),
                                                      tr("Páginas (*.html)"));
    if (!path.isEmpty()) {
        last_.report->write(path.toStdString(), last_.totals);
        progress_->setText(tr("El informe está en %1.").arg(QDir::toNativeSeparators(path)));
    }
}

/// First says what would change, and asks.
void AuditWindow::planRepair() {
    if (const auto kind = currentClass(); kind && mend_->isEnabled()) {
        startRepair(*kind, RepairKind::DryRun);
    }
}

void AuditWindow::startRepair(FindingClass what, RepairKind kind) {
    repair_ = std::make_unique<RepairJob>(what, kind);
    connect(repair_.get(), &RepairJob::progressed, this,
            ambrel::guarded([this](const RepairNews& news) { showShare(news.share); }));
    connect(repair_.get(), &RepairJob::finished, this,
            ambrel::guarded([this](const RepairNews& news, const QString& error) {
                const std::unique_ptr<RepairJob, void (*)(RepairJob*)> ended(
                    repair_.release(), [](RepairJob* job) { job->deleteLater(); }); // it is reporting its end
                showShare(1);
                progress_->setText(summary_); // of the last audit
                showState();
                if (ended->kind() == RepairKind::Writing || !error.isEmpty() || news.wasCancelled) {
                    finishRepair(news, error);
                } else {
                    finishDryRun(ended->what(), news);
                }
            }));
    progress_->setText(kind == RepairKind::DryRun ? tr("Se mira qué cambiaría…") : tr("Se repara…"));
    showShare(0);
    showState();
    cancel_->setFocus();
    repair_->start();
}

void AuditWindow::finishDryRun(FindingClass what, const RepairNews& news) {
    if (news.rows == 0) {
        Mensaje_Info(
            this,
            tr("Ninguna fila de «%1» se puede reparar de una sola manera.").arg(windowText(classTitle(what))),
            windowTitleText());
        classList_->setFocus();
        return;
    }
    QString line = news.examples.join(QLatin1Char('\n'));
    if (const auto more = news.rows - static_cast<std::uint64_t>(news.examples.size()); more > 0) {
        line += tr("\n… y %1 más.").arg(groupedNumber(more));
    }
    line += tr("\nLo que hay se guarda antes en un fichero, con el que «ambcp deshacer» lo devuelve.");
    if (Mensaje_NoSi(tr("¿Desea cambiar %1?").arg(rowsText(news.rows)), line, windowTitleText()) ==
        answeredYes) {
        startRepair(what, RepairKind::Writing);
    } else {
        classList_->setFocus();
    }
}

/// Or what has failed, or was interrupted. What was changed is audited again.
void AuditWindow::finishRepair(const RepairNews& news, const QString& error) {
    QString text = error.isEmpty() ? QString() : error + QStringLiteral("\n");
    text += news.wasCancelled ? tr("Interrumpido. ") : QString();
    text += tr("Cambiado: %1.").arg(rowsText(news.undoFile.empty() ? 0 : news.rows));
    if (news.left > 0) {
        text += tr(" Sin tocar, porque otro puesto lo impide: %1.").arg(rowsText(news.left));
    }
    if (!news.undoFile.empty()) {
        text += tr("\nLo que había está en %1; lo devuelve: ambcp deshacer %1")
                    .arg(QDir::toNativeSeparators(QString::fromStdString(news.undoFile)));
    }
    if (error.isEmpty()) {
        Mensaje_Info(this, text, windowTitleText());
    } else {
        Mensaje_Error(this, text, windowTitleText());
    }
    if (!news.undoFile.empty()) {
        start();
    }
}

/// Esc interrupts what runs before it closes the window.
void AuditWindow::reject() {
    if (isRunning()) {
        return cancel();
    }
    QDialog::reject();
}

void AuditWindow::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (!event->spontaneous() && !last_.report && !isRunning()) {
        ambrel::runGuarded([this] { start(); });
    }
}

/// A repair is interrupted, and the window stays to say what it has changed and how to undo that.
void AuditWindow::closeEvent(QCloseEvent* event) {
    if (repair_ && repair_->kind() == RepairKind::Writing) {
        cancel();
        return event->ignore();
    }
    audit_.reset(); // cancelled
    repair_.reset();
    showState();
    event->accept();
}

} // namespace host
