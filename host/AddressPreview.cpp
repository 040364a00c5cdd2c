// Composes the printed line of an address.
#include "host/AddressPreview.h"

#include <QHBoxLayout>
#include <QLabel>
#include <algorithm>

#include "data/ViasDM.h"
#include "dbase/system/error.h"
#include "host/HostTable.h"
#include "lookup/RutCodPostales.h"

namespace host {
namespace {

constexpr int unlimitedWidth = 0;
constexpr int included = 1;

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
    : QWidget(parent), namesTypes_(hasStreetTypes()), line_(new QLabel(this)) {
    setObjectName(QStringLiteral("VistaDomicilio"));
    setAttribute(Qt::WA_StyledBackground); // for the line above it
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(20, 10, 20, 12);
    layout->setSpacing(10);
    auto* caption = new QLabel(tr("Se imprime"), this);
    caption->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    line_->setObjectName(QStringLiteral("LDomicilio"));
    line_->setTextFormat(Qt::PlainText);
    line_->setWordWrap(true);
    line_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    layout->addWidget(caption);
    layout->addWidget(line_, 1);
}

void AddressPreview::showRow(HostTable& table) {
    line_->setText(Domicilio(table.data, unlimitedWidth, included, included, !namesTypes_));
    line_->setAccessibleName(tr("Dirección tal como se imprime: %1").arg(line_->text()));
    makeRoom();
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
