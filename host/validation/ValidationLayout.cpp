// The layout of the window that validates a file.
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTabWidget>
#include <QTableView>
#include <QVBoxLayout>
#include <algorithm>

#include "dialogs/common/EditMenu.h"
#include "host/WindowParts.h"
#include "host/validation/ColumnGrid.h"
#include "host/validation/UnsettledModel.h"
#include "host/validation/ValidationWindow.h"
#include "host/validation/VerdictChart.h"
#include "services/EventGuard.h"

namespace host {
namespace {

constexpr int margin = windowMargin;
constexpr int typingPause = 300; // milliseconds
constexpr int readableWidth = 780, readableHeight = 560;

} // namespace

/// An ordinary window without a parent: a dialog would stay above the form, and the user goes between both.
ValidationWindow::ValidationWindow() : pages_(new QTabWidget(this)) {
    setObjectName(QStringLiteral("FValidarFichero"));
    setWindowTitle(tr("Validar un fichero de direcciones"));
    setWindowFlags(Qt::Window);
    setAttribute(Qt::WA_DeleteOnClose);
    pages_->setObjectName(QStringLiteral("PValidacion"));
    pages_->addTab(filePage(), tr("&Fichero"));
    pages_->addTab(resultPage(), tr("&Resultado"));
    pages_->setTabEnabled(1, false);
    const auto namePages = [this] {
        pages_->setAccessibleName(pages_->tabText(pages_->currentIndex()).remove(QLatin1Char('&')));
    };
    connect(pages_, &QTabWidget::currentChanged, this, namePages);
    namePages();
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(margin * 3 / 4);
    column->addWidget(pages_, 1);
    QWidget* const buttons = commands();
    column->addWidget(buttons);
    later_.setSingleShot(true);
    later_.setInterval(typingPause);
    connect(&later_, &QTimer::timeout, this, ambrel::guarded([this] { preview(); }));
    ensurePolished();
    setMinimumWidth(std::max(buttons->sizeHint().width() + 2 * margin, sizeHint().width()));
    resizeWithinScreen(*this, {readableWidth, readableHeight});
    showState();
    input_->setFocus();
}

QLineEdit* ValidationWindow::fileBox(QGridLayout& grid, const char* objectName, const QString& label,
                                     const QString& button, void (ValidationWindow::*choose)()) {
    const int row = grid.rowCount();
    auto* const box = new QLineEdit(this);
    box->setObjectName(QLatin1String(objectName));
    new ambrel::EditMenu(box);
    auto* const caption = new QLabel(label, this);
    caption->setBuddy(box);
    auto* const browse = pushButton(objectName, button, this);
    browse->setObjectName(QStringLiteral("BB") + QLatin1String(objectName + 1));
    browse->setAccessibleName(tr("Elegir: %1").arg(QString(label).remove(QLatin1Char('&'))));
    connect(browse, &QPushButton::clicked, this, ambrel::guarded([this, choose] { (this->*choose)(); }));
    grid.addWidget(caption, row, 0);
    grid.addWidget(box, row, 1);
    grid.addWidget(browse, row, 2);
    return box;
}

QWidget* ValidationWindow::filePage() {
    auto* const page = new QWidget(this);
    auto* const column = new QVBoxLayout(page);
    column->setContentsMargins(margin, margin, margin, margin);
    auto* const grid = new QGridLayout;
    grid->setHorizontalSpacing(margin / 2);
    input_ = fileBox(*grid, "EFichero", tr("Fichero &CSV"), tr("Elegir…"), &ValidationWindow::chooseInput);
    column->addLayout(grid);
    format_ = wrappedLabel("LFormato", page);
    column->addWidget(format_);
    columns_ = new ColumnGrid(page);
    column->addWidget(columns_, 1);
    problem_ = wrappedLabel("LProblema", page);
    column->addWidget(problem_);
    auto* const rest = new QGridLayout;
    rest->setHorizontalSpacing(margin / 2);
    output_ = fileBox(*rest, "EResultado", tr("Re&sultado"), tr("Elegir…"), &ValidationWindow::chooseOutput);
    report_ = fileBox(*rest, "EInforme", tr("&Informe (si se quiere)"), tr("Elegir…"),
                      &ValidationWindow::chooseReport);
    threshold_ = new QDoubleSpinBox(page);
    threshold_->setObjectName(QStringLiteral("EUmbral"));
    threshold_->setRange(0.5, 1);
    threshold_->setSingleStep(0.01);
    threshold_->setValue(ambrel::ValidationOptions().threshold);
    threshold_->setToolTip(tr("Confianza desde la que una dirección se corrige sola"));
    auto* const caption = new QLabel(tr("&Umbral"), page);
    caption->setBuddy(threshold_);
    rest->addWidget(caption, rest->rowCount(), 0);
    rest->addWidget(threshold_, rest->rowCount() - 1, 1, Qt::AlignLeft);
    column->addLayout(rest);
    connect(input_, &QLineEdit::textChanged, this, ambrel::guarded([this] { inputChanged(); }));
    connect(columns_, &ColumnGrid::chosen, this, ambrel::guarded([this] { judgeColumns(); }));
    return page;
}

QWidget* ValidationWindow::resultPage() {
    auto* const page = new QWidget(this);
    auto* const column = new QVBoxLayout(page);
    column->setContentsMargins(margin, margin, margin, margin);
    bar_ = new QProgressBar(page);
    bar_->setObjectName(QStringLiteral("BRProgreso"));
    bar_->setAccessibleName(tr("Parte del fichero que se ha leído"));
    progress_ = wrappedLabel("LProgreso", page);
    chart_ = new VerdictChart(page);
    filter_ = new QComboBox(page);
    filter_->setObjectName(QStringLiteral("CBVeredicto"));
    auto* const caption = new QLabel(tr("&Ver"), page);
    caption->setBuddy(filter_);
    rows_ = new UnsettledModel(this);
    list_ = rowTable("GFilas", tr("Filas que no están resueltas"), *rows_, page);
    QHeaderView& header = *list_->horizontalHeader();
    int widest = 0;
    for (std::size_t verdict = 0; verdict < ambrel::verdictCount; ++verdict) {
        widest =
            std::max(widest, fontMetrics().horizontalAdvance(titleOf(static_cast<ambrel::Verdict>(verdict))));
    }
    const int number = fontMetrics().horizontalAdvance(QStringLiteral("1.000.000")) + margin;
    const int narrowest = fontMetrics().horizontalAdvance(QStringLiteral("La más parecida")) + margin;
    header.setMinimumSectionSize(number);
    header.resizeSection(UnsettledModel::Row, number);
    header.resizeSection(UnsettledModel::Verdict, widest + margin);
    list_->setMinimumWidth(number + 2 * narrowest + widest + 4 * margin);
    for (const int section : {UnsettledModel::Given, UnsettledModel::Nearest}) {
        header.setSectionResizeMode(section, QHeaderView::Stretch);
    }
    kept_ = wrappedLabel("LGuardadas", page);
    auto* const line = new QHBoxLayout;
    line->addWidget(caption);
    line->addWidget(filter_, 1);
    column->addWidget(bar_);
    column->addWidget(progress_);
    column->addWidget(chart_);
    column->addLayout(line);
    column->addWidget(list_, 1);
    column->addWidget(kept_);
    connect(filter_, &QComboBox::activated, this, ambrel::guarded([this] {
                const QVariant chosen = filter_->currentData();
                rows_->setFilter(chosen.isValid()
                                     ? std::optional(static_cast<ambrel::Verdict>(chosen.toInt()))
                                     : std::nullopt);
                showState();
            }));
    connect(list_, &QTableView::activated, this, ambrel::guarded([this] { takeCurrent(); }));
    connect(list_->selectionModel(), &QItemSelectionModel::currentChanged, this,
            ambrel::guarded([this] { showState(); }));
    return page;
}

QWidget* ValidationWindow::commands() {
    auto* const bar = new QWidget(this);
    auto* const line = new QHBoxLayout(bar);
    line->setContentsMargins(0, 0, 0, 0);
    take_ = pushButton("BBLlevar", tr("&Llevar a la ficha"), bar);
    take_->setToolTip(tr("Pone la dirección en una ficha nueva, sin guardarla (Intro en la lista)"));
    start_ = pushButton("BBEmpezar", tr("&Empezar"), bar);
    cancel_ = pushButton("BBInterrumpir", tr("I&nterrumpir"), bar);
    auto* const close = pushButton("BBCerrar", tr("Cerr&ar"), bar);
    line->addWidget(take_);
    line->addStretch();
    line->addWidget(start_);
    line->addWidget(cancel_);
    line->addWidget(close);
    connect(take_, &QPushButton::clicked, this, ambrel::guarded([this] { takeCurrent(); }));
    connect(start_, &QPushButton::clicked, this, ambrel::guarded([this] { start(); }));
    connect(cancel_, &QPushButton::clicked, this, ambrel::guarded([this] { cancel(); }));
    connect(close, &QPushButton::clicked, this, &QWidget::close);
    return bar;
}

} // namespace host
