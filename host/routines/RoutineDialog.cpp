// The dialog that runs one routine of the package.
#include "host/routines/RoutineDialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>
#include <algorithm>

#include "dialogs/common/EditMenu.h"
#include "services/EventGuard.h"

namespace host::routines {
namespace {

constexpr std::size_t mostLinesBelowEachOther = 8; // so that the dialog fits on a small screen
constexpr int smallestWidth = 480;
constexpr int largestNumber = 999;
constexpr int shownLetters = 16; // of a text, at least

QLineEdit* textLine(const QString& text, QWidget* parent) {
    auto* line = new QLineEdit(text, parent);
    new ambrel::EditMenu(line);
    line->setMinimumWidth(shownLetters * line->fontMetrics().averageCharWidth());
    return line;
}

/// Shows a result in a box that can be read and copied, but not changed.
QLineEdit* resultLine(const Result& result, QWidget* parent) {
    QLineEdit* const line = textLine(QString(), parent);
    line->setObjectName(result.object);
    line->setReadOnly(true);
    line->setAccessibleName(result.label);
    QPalette palette = line->palette();
    palette.setColor(QPalette::Base, palette.color(QPalette::Window)); // nothing can be typed here
    line->setPalette(palette);
    return line;
}

/// Makes the editors of all groups begin at the same column.
void alignLabels(const QWidget& dialog) {
    int width = 0;
    const auto forms = dialog.findChildren<QFormLayout*>();
    const auto eachLabel = [&](const auto& act) {
        for (const QFormLayout* form : forms) {
            for (int row = 0; row < form->rowCount(); ++row) {
                if (QLayoutItem* item = form->itemAt(row, QFormLayout::LabelRole); item && item->widget()) {
                    act(*item->widget());
                }
            }
        }
    };
    eachLabel([&](const QWidget& label) { width = qMax(width, label.sizeHint().width()); });
    eachLabel([&](QWidget& label) { label.setMinimumWidth(width); });
}

void align(QFormLayout& form) {
    form.setContentsMargins(14, 12, 14, 14);
    form.setHorizontalSpacing(14);
    form.setVerticalSpacing(8);
    form.setLabelAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    form.setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
}

} // namespace

RoutineDialog::RoutineDialog(Routine routine, dbase::Dataset& record, QWidget* parent)
    : QDialog(parent), routine_(std::move(routine)), record_(record) {
    setObjectName(QStringLiteral("FRutina"));
    setWindowTitle(routine_.title);
    layOut();
}

void RoutineDialog::layOut() {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(20, 18, 20, 18);
    column->setSpacing(14);
    column->addWidget(heading());
    const auto lines = routine_.arguments.size() + routine_.results.size();
    auto* boxes =
        new QBoxLayout(lines > mostLinesBelowEachOther ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
    boxes->setSpacing(column->spacing());
    boxes->addWidget(argumentBox());
    boxes->addWidget(resultBox());
    column->addLayout(boxes);
    column->addStretch();
    column->addWidget(commands());
    ensurePolished();
    alignLabels(*this);
    // The minimum height ignores wrapped lines, which would then take the boxes' room.
    const QMargins margins = column->contentsMargins();
    auto* const summary = findChild<QLabel*>(QStringLiteral("LResumen"));
    summary->setMinimumHeight(summary->heightForWidth(smallestWidth - margins.left() - margins.right()));
    // A least width that was set counts instead of the layout's own.
    setMinimumWidth(std::max(smallestWidth, minimumSizeHint().width()));
}

QWidget* RoutineDialog::heading() {
    auto* area = new QWidget(this);
    auto* column = new QVBoxLayout(area);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(4);
    auto* name = new QLabel(routine_.name, area);
    name->setObjectName(QStringLiteral("LRutina"));
    auto* summary = new QLabel(routine_.summary, area);
    summary->setObjectName(QStringLiteral("LResumen"));
    summary->setWordWrap(true);
    column->addWidget(name);
    column->addWidget(summary);
    return area;
}

QWidget* RoutineDialog::argumentBox() {
    auto* box = new QGroupBox(tr("Argumentos"), this);
    auto* form = new QFormLayout(box);
    align(*form);
    for (const Argument& argument : routine_.arguments) {
        addEditor(*form, argument);
    }
    return box;
}

void RoutineDialog::addEditor(QFormLayout& form, const Argument& argument) {
    QWidget* editor = makeEditor(argument);
    editor->setObjectName(argument.object);
    editor->setAccessibleName(argument.label);
    if (argument.kind == ArgumentKind::Flag) {
        form.addRow(QString(), editor); // its own caption labels it
    } else {
        form.addRow(argument.label, editor);
    }
}

QWidget* RoutineDialog::makeEditor(const Argument& argument) {
    switch (argument.kind) {
    case ArgumentKind::Text:
        break;
    case ArgumentKind::Number: {
        auto* number = new QSpinBox(this);
        number->setRange(-largestNumber, largestNumber);
        number->setValue(argument.initial.toInt());
        editors_.push_back({argument.object, [number] { return number->value(); }});
        return number;
    }
    case ArgumentKind::Flag: {
        auto* flag = new QCheckBox(argument.label, this);
        flag->setChecked(argument.initial.toBool());
        editors_.push_back({argument.object, [flag] { return flag->isChecked(); }});
        return flag;
    }
    case ArgumentKind::Choice: {
        auto* choice = new QComboBox(this);
        choice->addItems(argument.choices);
        choice->setCurrentText(argument.initial.toString());
        editors_.push_back({argument.object, [choice] { return choice->currentText(); }});
        return choice;
    }
    }
    QLineEdit* const text = textLine(argument.initial.toString(), this);
    editors_.push_back({argument.object, [text] { return text->text(); }});
    return text;
}

QWidget* RoutineDialog::resultBox() {
    auto* box = new QGroupBox(tr("Resultados"), this);
    auto* form = new QFormLayout(box);
    align(*form);
    for (const Result& result : routine_.results) {
        results_.push_back(resultLine(result, box));
        form->addRow(result.label, results_.back());
    }
    return box;
}

QWidget* RoutineDialog::commands() {
    auto* bar = new QWidget(this);
    auto* line = new QHBoxLayout(bar);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(8);
    auto* execute = new QPushButton(tr("&Ejecutar"), bar);
    execute->setObjectName(QStringLiteral("BBEjecutar"));
    execute->setDefault(true);
    auto* close = new QPushButton(tr("&Cerrar"), bar);
    close->setObjectName(QStringLiteral("BBCerrar"));
    connect(execute, &QPushButton::clicked, this, ambrel::guarded([this] { run(); }));
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    line->addStretch();
    line->addWidget(execute);
    line->addWidget(close);
    return bar;
}

void RoutineDialog::run() {
    for (QLineEdit* line : results_) {
        line->clear();
        line->setPlaceholderText({});
    }
    Values values;
    for (const Editor& editor : editors_) {
        values.set(editor.object, editor.value());
    }
    const QStringList answers = routine_.call(values, {this, record_});
    for (std::size_t index = 0; index < results_.size(); ++index) {
        results_[index]->setText(answers.value(static_cast<qsizetype>(index)));
        results_[index]->setCursorPosition(0);
        results_[index]->setPlaceholderText(tr("(vacío)"));
    }
}

} // namespace host::routines
