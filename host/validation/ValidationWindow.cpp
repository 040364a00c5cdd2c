// Validating a file of addresses: what the window does. Its layout is in ValidationLayout.cpp.
#include "host/validation/ValidationWindow.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QDir>
#include <QDoubleSpinBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTabWidget>
#include <QTableView>

#include "host/GroupedNumber.h"
#include "host/ShownTime.h"
#include "host/validation/ColumnGrid.h"
#include "host/validation/UnsettledModel.h"
#include "host/validation/VerdictChart.h"
#include "services/EventGuard.h"
#include "services/Mensaje.h"

namespace host {
namespace {

constexpr int resultPageIndex = 1;
constexpr int barSteps = 1000;
constexpr std::size_t previewRows = 8;

/// Never standard input, which "-" would be.
QString pathOf(const QLineEdit& box) {
    const QString text = box.text().trimmed();
    return text.isEmpty() ? QString() : QFileInfo(text).absoluteFilePath();
}

bool isSameFile(const QString& one, const QString& other) {
    const QFileInfo a(one), b(other);
    return a.absoluteFilePath() == b.absoluteFilePath() ||
           (a.exists() && a.canonicalFilePath() == b.canonicalFilePath());
}

QString encodingOf(const loading::CsvFormat& format) {
    const std::string_view name = loading::textEncodingName(format.encoding);
    return QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())).toUpper();
}

} // namespace

ValidationWindow::~ValidationWindow() = default;

void ValidationWindow::chooseInput() {
    const QString path = QFileDialog::getOpenFileName(this, tr("Fichero que se valida"), input_->text(),
                                                      tr("Ficheros CSV (*.csv *.txt);;Todos (*)"));
    if (!path.isEmpty()) {
        input_->setText(path);
    }
}

void ValidationWindow::chooseOutput() {
    const QString path =
        QFileDialog::getSaveFileName(this, tr("Fichero del resultado"), output_->text(),
                                     tr("Ficheros CSV (*.csv)"), nullptr, QFileDialog::DontConfirmOverwrite);
    if (!path.isEmpty()) {
        output_->setText(path);
    }
}

void ValidationWindow::chooseReport() {
    const QString path =
        QFileDialog::getSaveFileName(this, tr("Informe"), report_->text(), tr("Páginas (*.html)"), nullptr,
                                     QFileDialog::DontConfirmOverwrite);
    if (!path.isEmpty()) {
        report_->setText(path);
    }
}

/// Proposes where the result goes, beside the file. While its name is being typed there is none.
void ValidationWindow::inputChanged() {
    isReadable_ = false;
    later_.stop();
    const QFileInfo file(pathOf(*input_));
    if (!file.isFile()) {
        showState();
        return later_.start();
    }
    const QString text = input_->text().trimmed();
    output_->setText(text.left(text.size() - file.fileName().size()) + file.completeBaseName() +
                     QStringLiteral("-validado.csv"));
    preview();
}

void ValidationWindow::preview() {
    columns_->showFile({});
    format_->clear();
    if (pathOf(*input_).isEmpty()) {
        return showProblem({});
    }
    try {
        const auto found = ambrel::previewAddressFile(ambrel::openAddressFile(pathOf(*input_).toStdString()),
                                                      {}, previewRows);
        columns_->showFile(found);
        format_->setText(tr("Se lee como %1, con «%2» entre las columnas.")
                             .arg(encodingOf(found.format), found.format.separator == '\t'
                                                                ? tr("tabulador")
                                                                : QString(QChar(found.format.separator))));
        isReadable_ = found.problem.empty();
        showProblem(QString::fromStdString(found.problem));
    } catch (const std::exception& failure) {
        showProblem(QString::fromUtf8(failure.what()));
    }
}

/// The user has said otherwise what the columns hold.
void ValidationWindow::judgeColumns() {
    try {
        const auto found = ambrel::previewAddressFile(ambrel::openAddressFile(pathOf(*input_).toStdString()),
                                                      options(), previewRows);
        isReadable_ = found.problem.empty();
        showProblem(QString::fromStdString(found.problem));
    } catch (const std::exception& failure) {
        isReadable_ = false;
        showProblem(QString::fromUtf8(failure.what()));
    }
}

void ValidationWindow::showProblem(const QString& problem) {
    problem_->setText(problem.isEmpty() ? QString() : QStringLiteral("⚠ ") + problem);
    showState();
}

ambrel::AddressFileOptions ValidationWindow::options() const {
    ambrel::AddressFileOptions options;
    options.columns = columns_->columns();
    options.validation.threshold = threshold_->value();
    return options;
}

/// The file that is read is never written to, and what exists is replaced only when the user says so.
bool ValidationWindow::mayStart() {
    const QString input = pathOf(*input_), output = pathOf(*output_), report = pathOf(*report_);
    const QString title = tr("Validar un fichero");
    if (output.isEmpty()) {
        Mensaje_Error(this, tr("Falta el fichero del resultado."), title);
        return false;
    }
    if (isSameFile(output, input) || isSameFile(report, input) ||
        (!report.isEmpty() && isSameFile(report, output))) {
        Mensaje_Error(this, tr("El fichero que se lee, el resultado y el informe han de ser distintos."),
                      title);
        return false;
    }
    for (const QString& path : {output, report}) {
        if (!path.isEmpty() && QFileInfo(path).isFile() &&
            Mensaje_SiNo(this, tr("¿Desea sustituirlo?"),
                         tr("Ya existe %1.").arg(QDir::toNativeSeparators(path)), title) != answeredYes) {
            return false;
        }
    }
    return true;
}

void ValidationWindow::start() {
    if (isRunning() || !isReadable_ || !mayStart()) {
        return;
    }
    rows_->clear();
    rows_->setFilter(std::nullopt);
    chart_->setTotals({});
    refillFilter({});
    kept_->clear();
    job_ = std::make_unique<ValidationJob>(ValidationOrder{pathOf(*input_).toStdString(),
                                                           pathOf(*output_).toStdString(),
                                                           pathOf(*report_).toStdString(), options()});
    connect(job_.get(), &ValidationJob::progressed, this,
            ambrel::guarded([this](const ValidationNews& news) { follow(news); }));
    connect(
        job_.get(), &ValidationJob::finished, this,
        ambrel::guarded([this](const ValidationNews& news, const QString& error) { finish(news, error); }));
    elapsed_.start();
    progress_->setText(tr("Empieza…"));
    bar_->setRange(0, 0);
    pages_->setTabEnabled(resultPageIndex, true);
    pages_->setCurrentIndex(resultPageIndex);
    showState();
    cancel_->setFocus();
    job_->start();
}

void ValidationWindow::cancel() {
    if (isRunning()) {
        progress_->setText(tr("Se interrumpe…"));
        job_->cancel();
    }
}

void ValidationWindow::follow(const ValidationNews& news) {
    rows_->append(news.rows);
    chart_->setTotals(news.totals);
    refillFilter(news.totals);
    showProgress(news);
}

void ValidationWindow::showProgress(const ValidationNews& news) {
    const double seconds = std::max(0.001, static_cast<double>(elapsed_.elapsed()) / 1000);
    QString text =
        tr("%1, %2 por segundo")
            .arg(rowsText(news.judged),
                 groupedNumber(static_cast<std::uint64_t>(static_cast<double>(news.judged) / seconds)));
    if (news.share > 0) {
        bar_->setRange(0, barSteps);
        bar_->setValue(static_cast<int>(news.share * barSteps));
        text += tr("; faltan %1 min").arg(shownTime(seconds * (1 - news.share) / news.share));
    }
    progress_->setText(text);
}

void ValidationWindow::finish(const ValidationNews& news, const QString& error) {
    follow(news);
    bar_->setRange(0, barSteps);
    job_.release()->deleteLater(); // it is reporting its end
    if (!error.isEmpty()) {
        progress_->setText(tr("No se ha terminado."));
    } else if (news.totals.wasCancelled) {
        progress_->setText(tr("Interrumpido: no se ha escrito el resultado."));
    } else {
        bar_->setValue(barSteps);
        const QString read =
            tr("%1 %2, %3 %4, en %5 min.")
                .arg(rowsText(news.totals.rows), news.totals.rows == 1 ? tr("leída") : tr("leídas"),
                     groupedNumber(news.totals.settled()),
                     news.totals.settled() == 1 ? tr("resuelta") : tr("resueltas"),
                     shownTime(static_cast<double>(elapsed_.elapsed()) / 1000));
        progress_->setText(read + tr(" El resultado está en %1.").arg(output_->text().trimmed()));
    }
    bool isCut = false;
    for (std::size_t verdict = 0; verdict < ambrel::verdictCount; ++verdict) {
        isCut = isCut || (!ambrel::isSettled(static_cast<ambrel::Verdict>(verdict)) &&
                          news.totals.verdicts[verdict] > keptOfEachVerdict);
    }
    kept_->setText(
        !isCut
            ? QString()
            : tr("Se enseñan las %1 primeras filas de cada veredicto").arg(groupedNumber(keptOfEachVerdict)) +
                  (error.isEmpty() && !news.totals.wasCancelled ? tr("; todas están en el resultado.")
                                                                : QStringLiteral(".")));
    showState();
    if (rows_->rowCount() > 0) {
        list_->setCurrentIndex(rows_->index(0, 0));
        list_->setFocus();
    } else {
        start_->setFocus();
    }
    if (!error.isEmpty()) {
        Mensaje_Error(this, error, tr("Validar un fichero"));
    }
}

void ValidationWindow::refillFilter(const ambrel::AddressFileTotals& totals) {
    const QVariant chosen = filter_->currentData();
    filter_->clear();
    filter_->addItem(
        tr("Todas las que no están resueltas (%1)").arg(groupedNumber(totals.rows - totals.settled())));
    for (std::size_t i = 0; i < ambrel::verdictCount; ++i) {
        const auto verdict = static_cast<ambrel::Verdict>(i);
        if (!ambrel::isSettled(verdict) && totals.of(verdict) != 0) {
            filter_->addItem(
                QStringLiteral("%1 (%2)").arg(titleOf(verdict), groupedNumber(totals.of(verdict))),
                static_cast<int>(i));
        }
    }
    filter_->setCurrentIndex(std::max(0, filter_->findData(chosen)));
}

void ValidationWindow::showState() {
    start_->setEnabled(!isRunning() && isReadable_);
    cancel_->setEnabled(isRunning());
    take_->setEnabled(list_->currentIndex().isValid());
    for (QWidget* const box :
         std::initializer_list<QWidget*>{input_, output_, report_, threshold_, columns_}) {
        box->setEnabled(!isRunning());
    }
}

void ValidationWindow::takeCurrent() {
    if (const QModelIndex current = list_->currentIndex(); current.isValid()) {
        const UnsettledRow& row = rows_->row(current.row());
        Q_EMIT addressChosen(row.judged, row.number);
    }
}

/// Esc interrupts a run before it closes the window.
void ValidationWindow::reject() {
    if (isRunning()) {
        return cancel();
    }
    QDialog::reject();
}

void ValidationWindow::closeEvent(QCloseEvent* event) {
    job_.reset(); // cancelled
    showState();
    event->accept();
}

} // namespace host
