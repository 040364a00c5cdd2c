// Translates the context menu of an edit box.
#include "dialogs/common/EditMenu.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QLineEdit>
#include <QMenu>
#include <algorithm>
#include <array>
#include <utility>

namespace ambrel {
namespace {

constexpr std::array<std::pair<const char*, const char*>, 7> texts{{
    {"&Undo", "&Deshacer"},
    {"&Redo", "&Rehacer"},
    {"Cu&t", "Cor&tar"},
    {"&Copy", "&Copiar"},
    {"&Paste", "&Pegar"},
    {"Delete", "Eliminar"},
    {"Select All", "Seleccionar todo"},
}};

/// Translates the toolkit's English texts; texts already translated by the program stay.
void putIntoSpanish(QMenu& menu) {
    for (QAction* const action : menu.actions()) {
        const QString text = action->text().section(QLatin1Char('\t'), 0, 0); // its key follows
        const auto* const found = std::ranges::find_if(
            texts, [&](const auto& known) { return text == QLatin1String(known.first); });
        if (found != texts.end()) {
            action->setText(QString::fromUtf8(found->second) + action->text().mid(text.size()));
        }
    }
}

} // namespace

EditMenu::EditMenu(QLineEdit* box) : QObject(box), box_(box) { box->installEventFilter(this); }

bool EditMenu::eventFilter(QObject* watched, QEvent* event) {
    if (watched != box_ || event->type() != QEvent::ContextMenu ||
        box_->contextMenuPolicy() != Qt::DefaultContextMenu) {
        return false;
    }
    QMenu* const menu = box_->createStandardContextMenu();
    if (!menu) {
        return false;
    }
    putIntoSpanish(*menu);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(static_cast<const QContextMenuEvent*>(event)->globalPos());
    return true;
}

} // namespace ambrel
