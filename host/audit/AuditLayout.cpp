// The layout of the window that audits the tables.
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QSplitter>
#include <QTableView>
#include <QVBoxLayout>
#include <algorithm>

#include "host/WindowParts.h"
#include "host/audit/AuditWindow.h"
#include "host/audit/ClassTotalsModel.h"
#include "host/audit/FindingsModel.h"
#include "package/AmbCodPostales.h"
#include "services/EventGuard.h"

namespace host {
namespace {

constexpr int margin = windowMargin;
constexpr int readableWidth = 780, readableHeight = 640;
constexpr int textLines = 2;    // the lists do not jump
constexpr int shownClasses = 6; // without scrolling

int widthOf(const QTableView& table, const QString& widest) {
    return table.fontMetrics().horizontalAdvance(widest) + margin;
}

} // namespace

/// An ordinary window without a parent: a dialog would stay above the form, and the user goes between both.
AuditWindow::AuditWindow() : classes_(new ClassTotalsModel(this)), findings_(new FindingsModel(this)) {
    setObjectName(QStringLiteral("FRevisarTablas"));
    setWindowTitle(tr("Revisar las tablas"));
    setWindowFlags(Qt::Window);
    setAttribute(Qt::WA_DeleteOnClose);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(margin * 3 / 4);
    bar_ = new QProgressBar(this);
    bar_->setObjectName(QStringLiteral("BRProgreso"));
    bar_->setAccessibleName(tr("Parte de las tablas que se ha leído"));
    progress_ = wrappedLabel("LProgreso", this);
    progress_->setMinimumHeight(textLines * fontMetrics().lineSpacing());
    kept_ = wrappedLabel("LGuardados", this);
    kept_->hide();
    detail_ = wrappedLabel("LHallazgo", this);
    detail_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    detail_->setMinimumHeight(textLines * fontMetrics().lineSpacing());
    auto* const panes = new QSplitter(Qt::Vertical, this);
    panes->setChildrenCollapsible(false);
    panes->addWidget(classesPane());
    panes->addWidget(findingsPane());
    panes->setStretchFactor(1, 1);
    panes->setSizes({classList_->height(), readableHeight});
    QWidget* const buttons = commands();
    column->addWidget(bar_);
    column->addWidget(progress_);
    column->addWidget(panes, 1);
    column->addWidget(detail_);
    column->addWidget(kept_);
    column->addWidget(buttons);
    ensurePolished();
    if (buttons->sizeHint().width() + 2 * margin > screen()->availableSize().width()) {
        static_cast<QBoxLayout*>(buttons->layout())->setDirection(QBoxLayout::TopToBottom);
    }
    setMinimumWidth(std::max(buttons->sizeHint().width() + 2 * margin, sizeHint().width()));
    resizeWithinScreen(*this, {readableWidth, readableHeight});
    showState();
}

QWidget* AuditWindow::classesPane() {
    classList_ = rowTable("GClases", tr("Clases de hallazgos"), *classes_, this);
    QHeaderView& header = *classList_->horizontalHeader();
    int widest = widthOf(*classList_, tr("Todos los hallazgos"));
    for (std::size_t i = 0; i < ambrel::directory::findingClassCount; ++i) {
        const auto kind = static_cast<ambrel::directory::FindingClass>(i);
        widest = std::max(widest, widthOf(*classList_, windowText(ambrel::directory::classTitle(kind))));
    }
    header.resizeSection(ClassTotalsModel::Class, widest);
    for (const int section : {ClassTotalsModel::Grave, ClassTotalsModel::Warning, ClassTotalsModel::Note}) {
        header.resizeSection(section, widthOf(*classList_, QStringLiteral("1.000.000")));
    }
    header.setStretchLastSection(true);
    const int lines = shownClasses * classList_->verticalHeader()->defaultSectionSize();
    classList_->setMinimumHeight(lines / 2);
    classList_->resize(classList_->width(), lines + header.sizeHint().height());
    connect(classList_->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            ambrel::guarded([this] { filter(); }));
    return classList_;
}

QWidget* AuditWindow::findingsPane() {
    list_ = rowTable("GHallazgos", tr("Hallazgos"), *findings_, this);
    QHeaderView& header = *list_->horizontalHeader();
    header.resizeSection(FindingsModel::Severity, widthOf(*list_, tr("Gravedad")));
    header.resizeSection(FindingsModel::Row, widthOf(*list_, QStringLiteral("POSTAL 1.000.000")));
    header.setSectionResizeMode(FindingsModel::Text, QHeaderView::Stretch);
    header.resizeSection(FindingsModel::Proposal,
                         widthOf(*list_, QStringLiteral("IMPAR_INI=1, IMPAR_FIN=99")));
    connect(list_, &QTableView::activated, this, ambrel::guarded([this] { openCard(); }));
    connect(list_->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            ambrel::guarded([this] { showState(); }));
    return list_;
}

QWidget* AuditWindow::commands() {
    auto* const bar = new QWidget(this);
    auto* const both = new QBoxLayout(QBoxLayout::LeftToRight, bar); // one below the other on a narrow screen
    both->setContentsMargins(0, 0, 0, 0);
    card_ = pushButton("BBFicha", tr("&Ficha…"), bar);
    card_->setToolTip(tr("Abre la ficha de la vía del hallazgo (Intro en la lista)"));
    mend_ = pushButton("BBReparar", tr("&Reparar…"), bar);
    mend_->setToolTip(tr("Dice qué cambiaría para reparar la clase elegida, y lo cambia si se quiere"));
    save_ = pushButton("BBInforme", tr("&Guardar informe…"), bar);
    start_ = pushButton("BBEmpezar", tr("Revisar de &nuevo"), bar);
    cancel_ = pushButton("BBInterrumpir", tr("&Interrumpir"), bar);
    auto* const close = pushButton("BBCerrar", tr("&Cerrar"), bar);
    auto* const ofFindings = new QHBoxLayout;
    for (QPushButton* const button : {card_, mend_, save_}) {
        ofFindings->addWidget(button);
    }
    ofFindings->addStretch();
    auto* const ofWindow = new QHBoxLayout;
    ofWindow->addStretch();
    for (QPushButton* const button : {start_, cancel_, close}) {
        ofWindow->addWidget(button);
    }
    both->addLayout(ofFindings, 1);
    both->addLayout(ofWindow);
    connect(card_, &QPushButton::clicked, this, ambrel::guarded([this] { openCard(); }));
    connect(mend_, &QPushButton::clicked, this, ambrel::guarded([this] { planRepair(); }));
    connect(save_, &QPushButton::clicked, this, ambrel::guarded([this] { saveReport(); }));
    connect(start_, &QPushButton::clicked, this, ambrel::guarded([this] { start(); }));
    connect(cancel_, &QPushButton::clicked, this, ambrel::guarded([this] { cancel(); }));
    connect(close, &QPushButton::clicked, this, &QWidget::close);
    return bar;
}

} // namespace host
