// Composes the printed line of an address, and lets it be copied.
#include "host/AddressPreview.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QShortcut>
#include <algorithm>

#include "data/ViasDM.h"
#include "dbase/system/error.h"
#include "host/HostTable.h"
#include "lookup/RutCodPostales.h"

namespace host {
namespace {

constexpr int unlimitedWidth = 0;
constexpr int included = 1;
constexpr int buttonPadding = 4;

bool hasStreetTypes() {
    try {
        TDMVias types;
        types.tbTipo_Via.open();
        return true;
    } catch (const dbase::Error&) {
        return false; // the line then shows the abbreviation
    }
}

} // namespace

AddressPreview::AddressPreview(QWidget* parent)
    : QWidget(parent), namesTypes_(hasStreetTypes()), line_(new QLabel(this)),
      copy_(new QPushButton(tr("Copiar"), this)) {
    setObjectName(QStringLiteral("VistaDomicilio"));
    setAttribute(Qt::WA_StyledBackground); // for the line above it
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(20, 8, 20, 10);
    layout->setSpacing(10);
    auto* caption = new QLabel(tr("Se imprime"), this);
    caption->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    line_->setObjectName(QStringLiteral("LDomicilio"));
    line_->setTextFormat(Qt::PlainText);
    line_->setWordWrap(true);
    line_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    line_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    for (QLabel* const label : {caption, line_}) { // in one line with the button's text
        label->setContentsMargins(0, buttonPadding, 0, buttonPadding);
    }
    line_->installEventFilter(this);
    copy_->setObjectName(QStringLiteral("BBCopiar"));
    copy_->setAutoDefault(false);
    copy_->setProperty("list", true); // small, like the buttons of the lists
    const QKeySequence keys(QStringLiteral("Ctrl+Shift+C"), QKeySequence::PortableText);
    copy_->setToolTip(tr("Copiar la línea (%1)").arg(keys.toString(QKeySequence::NativeText)));
    connect(copy_, &QPushButton::clicked, this, &AddressPreview::copy);
    connect(new QShortcut(keys, this), &QShortcut::activated, this, &AddressPreview::copy);
    layout->addWidget(caption);
    layout->addWidget(line_, 1);
    layout->addWidget(copy_, 0, Qt::AlignTop);
}

void AddressPreview::showRow(HostTable& table) {
    const QString line = Domicilio(table.data, unlimitedWidth, included, included, !namesTypes_);
    if (line_->text() != line) { // the same text again would drop what the user has selected
        line_->setText(line);
    }
    line_->setAccessibleName(tr("Dirección tal como se imprime: %1").arg(line));
    line_->setFocusPolicy(line.isEmpty() ? Qt::NoFocus : Qt::StrongFocus);
    copy_->setEnabled(!line.isEmpty());
    makeRoom();
}

void AddressPreview::copy() {
    if (!line_->text().isEmpty()) {
        QGuiApplication::clipboard()->setText(line_->text());
        Q_EMIT copied();
    }
}

/// The whole line where nothing is selected.
void AddressPreview::copySelected() {
    if (!line_->hasSelectedText() || line_->selectedText() == line_->text()) {
        return copy();
    }
    QGuiApplication::clipboard()->setText(line_->selectedText());
}

/// The label's own menu speaks English, and its Ctrl+C copies nothing without a selection.
bool AddressPreview::eventFilter(QObject* watched, QEvent* event) {
    if (watched != line_) {
        return QWidget::eventFilter(watched, event);
    }
    switch (event->type()) {
    case QEvent::ContextMenu:
        openMenu(static_cast<const QContextMenuEvent*>(event)->globalPos());
        return true;
    case QEvent::ShortcutOverride:
        if (static_cast<const QKeyEvent*>(event)->matches(QKeySequence::Copy)) {
            event->accept();
            return true;
        }
        return false;
    case QEvent::KeyPress:
        if (static_cast<const QKeyEvent*>(event)->matches(QKeySequence::Copy)) {
            copySelected();
            return true;
        }
        return false;
    case QEvent::FocusIn: // the selection shows where the keyboard is
        if (const auto reason = static_cast<const QFocusEvent*>(event)->reason();
            reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason) {
            line_->setSelection(0, static_cast<int>(line_->text().size()));
        }
        return false;
    case QEvent::FocusOut:
        if (static_cast<const QFocusEvent*>(event)->reason() != Qt::PopupFocusReason) {
            line_->setSelection(0, 0);
        }
        return false;
    default:
        return false;
    }
}

void AddressPreview::openMenu(const QPoint& place) {
    auto* const menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    QAction* const copying =
        menu->addAction(tr("&Copiar"), QKeySequence::Copy, this, &AddressPreview::copySelected);
    QAction* const selecting =
        menu->addAction(tr("&Seleccionar todo"), QKeySequence::SelectAll, this, [this] {
            line_->setFocus();
            line_->setSelection(0, static_cast<int>(line_->text().size()));
        });
    copying->setEnabled(!line_->text().isEmpty());
    selecting->setEnabled(!line_->text().isEmpty());
    menu->popup(place);
}

void AddressPreview::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    makeRoom();
}

void AddressPreview::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    makeRoom();
}

/// A window's minimum height ignores wrapped lines, which would then take the boxes' room.
void AddressPreview::makeRoom() {
    if (isVisible()) {
        line_->setMinimumHeight(std::max(0, line_->heightForWidth(line_->width()))); // -1 for an empty line
    }
}

} // namespace host
