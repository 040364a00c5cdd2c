// When a list of suggestions opens and closes, and its keys.
#include "form/SuggestionList.h"

#include <QAccessible>
#include <QApplication>
#include <QCursor>
#include <QKeyEvent>
#include <algorithm>
#include <utility>

#include "form/SecondClick.h"
#include "form/SuggestionView.h"
#include "form/UnderBox.h"
#include "services/EventGuard.h"

namespace ambrel {
namespace {

constexpr int keylessPause =
    150; // after a change without a key: a paste by mouse, a composed letter; milliseconds
constexpr int readingPause = 1; // between two pieces of a source's work

/// What was typed: a completed tail stands selected after the caret.
QString typedText(const QLineEdit& box) {
    const bool hasTail = box.hasSelectedText() && box.selectionStart() > 0 &&
                         box.cursorPosition() == box.selectionStart() &&
                         box.selectionEnd() == box.text().size();
    return hasTail ? box.text().left(box.selectionStart()) : box.text();
}

bool isPlain(const QKeyEvent& event) { return (event.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier; }

bool isReturn(int key) { return key == Qt::Key_Return || key == Qt::Key_Enter; }

} // namespace

SuggestionList::SuggestionList(QLineEdit* box, Source source, Taker taker)
    : QObject(box), box_(box), source_(std::move(source)), taker_(std::move(taker)) {
    if (!taker_) {
        taker_ = [this](const SuggestionRow& row) { replaceText(*box_, row.name); };
    }
    later_.setSingleShot(true);
    connect(&later_, &QTimer::timeout, this, [this] { ask(occasion_); });
    connect(box, &QLineEdit::textEdited, this, [this] { typed(); });
    // The program has set another text; after textEdited, which is emitted later.
    connect(
        box, &QLineEdit::textChanged, this,
        [this] {
            if (isOpen() && !isStale_ && box_->text() != answered_) {
                close();
            }
        },
        Qt::QueuedConnection);
    box->installEventFilter(this);
}

SuggestionList::~SuggestionList() {
    if (isBoxWhole()) {
        close();
    }
    delete view_;
}

bool SuggestionList::isOpen() const { return view_ && view_->isVisible(); }

int SuggestionList::currentRow() const { return isOpen() ? view_->currentRow() : -1; }

/// A box that is being destroyed is not an edit box any more, but still gets events.
bool SuggestionList::isBoxWhole() const { return qobject_cast<QLineEdit*>(parent()) != nullptr; }

bool SuggestionList::mayOpen() const {
    return isBoxWhole() && box_->isVisible() && box_->hasFocus() && box_->isEnabled() &&
           !box_->isReadOnly() && box_->isActiveWindow();
}

/// The user has changed the text. What was chosen among the rows of the former one no longer is.
void SuggestionList::typed() {
    if (isTaking_) {
        return;
    }
    isStale_ = true;
    occasion_ = Occasion::Typed;
    if (isOpen()) {
        choose(-1);
    }
    if (!isKeyDown_ && !later_.isActive()) {
        later_.start(keylessPause);
    }
}

void SuggestionList::ask(Occasion occasion) {
    later_.stop();
    if (occasion == Occasion::Typed && !isStale_) {
        return;
    }
    if (!mayOpen()) {
        return close();
    }
    const QString text = typedText(*box_);
    std::optional<Rows> rows = Rows();
    const QPointer<SuggestionList> alive = this;
    if (!text.trimmed().isEmpty()) {
        runGuarded([&] { rows = source_(text, occasion); });
    }
    if (!alive || !mayOpen()) {
        return; // a failure was shown meanwhile
    }
    if (!rows) {
        occasion_ = occasion;
        return later_.start(readingPause);
    }
    isStale_ = false;
    answered_ = box_->text();
    open(std::move(*rows));
    if (isOpen() && occasion == Occasion::Asked) {
        choose(0);
    }
}

void SuggestionList::open(Rows rows) {
    rows_ = std::move(rows);
    if (rows_.empty()) {
        return close();
    }
    QWidget* const window = box_->window();
    if (view_ && view_->parentWidget() != window) {
        close();
        delete view_; // the box has moved to another window
    }
    if (!view_) {
        view_ = new SuggestionView(*window);
        connect(view_, &QListView::clicked, this, [this](const QModelIndex& index) {
            new SecondClick(QCursor::pos()); // a double click must not press what lies under the list
            take(index.row());
        });
    }
    const bool wasOpen = isOpen();
    view_->setRows(rows_);
    view_->showAt(*box_);
    if (!wasOpen) {
        qApp->installEventFilter(this); // the last one is the first to see keys, before a dialog's preview
        description_ = box_->accessibleDescription();
    }
    describe();
}

void SuggestionList::close() {
    later_.stop();
    isStale_ = false;
    if (!isOpen()) {
        return;
    }
    choose(-1);
    view_->hide();
    qApp->removeEventFilter(this);
    box_->setAccessibleDescription(description_);
}

/// A screen reader reads a new description of the box that it is in.
void SuggestionList::describe() {
    const QString count = rows_.size() == 1 ? QStringLiteral("1 sugerencia")
                                            : QStringLiteral("%1 sugerencias").arg(rows_.size());
    QStringList texts{count + QStringLiteral("; la flecha abajo elige"), description_};
    texts.removeAll(QString());
    box_->setAccessibleDescription(texts.join(QStringLiteral(". ")));
}

/// Makes a row current, or none, and has it announced as if the keyboard were in it.
void SuggestionList::choose(int row) {
    if (row == view_->currentRow()) {
        return;
    }
    view_->setCurrentRow(row);
    if (row >= 0) { // the view announces it by itself only in some versions of Qt
        QAccessibleEvent event(view_, QAccessible::Focus);
        event.setChild(row);
        QAccessible::updateAccessibility(&event);
    } else if (box_->hasFocus()) {
        QAccessibleEvent event(box_, QAccessible::Focus);
        QAccessible::updateAccessibility(&event);
    }
}

void SuggestionList::take(int row) {
    const SuggestionRow taken = rows_[static_cast<std::size_t>(row)];
    const Taker taker = taker_;
    const QPointer<SuggestionList> alive = this;
    close();
    isTaking_ = true;
    runGuarded([&] { taker(taken); });
    if (alive) {
        isTaking_ = false;
    }
}

bool SuggestionList::eventFilter(QObject* watched, QEvent* event) {
    if (watched == box_) {
        return filterBox(*event);
    }
    if (!isOpen()) {
        return false;
    }
    switch (elsewhereEvent(*box_, *view_, *watched, *event)) {
    case ElsewhereEvent::None:
        break;
    case ElsewhereEvent::Moved:
        view_->showAt(*box_);
        break;
    case ElsewhereEvent::Left:
        close();
        break;
    }
    return false;
}

bool SuggestionList::filterBox(QEvent& event) {
    switch (event.type()) {
    case QEvent::ShortcutOverride:
        if (!uses(static_cast<const QKeyEvent&>(event))) {
            return false;
        }
        event.accept();
        return true;
    case QEvent::KeyPress:
        isKeyDown_ = true;
        return filterKey(static_cast<const QKeyEvent&>(event));
    case QEvent::KeyRelease:
        if (const auto& key = static_cast<const QKeyEvent&>(event); !key.isAutoRepeat()) {
            isKeyDown_ = false;
            if (!later_.isActive()) {
                occasion_ = Occasion::Typed;
            }
            later_.start(0); // the handlers of the release come first
        }
        return false;
    case QEvent::FocusOut:
        isKeyDown_ = false;
        close();
        return false;
    case QEvent::Move:
    case QEvent::Resize:
        if (isOpen()) {
            view_->showAt(*box_);
        }
        return false;
    default:
        if (isOpen() && !mayOpen()) {
            close();
        }
        return false;
    }
}

/// Whether an open list uses a key, so that no shortcut may.
bool SuggestionList::uses(const QKeyEvent& event) const {
    if (!isOpen() || !isPlain(event)) {
        return false;
    }
    switch (event.key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Escape:
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return currentRow() >= 0;
    default:
        return false;
    }
}

/// True if the box must not receive the key.
bool SuggestionList::filterKey(const QKeyEvent& event) {
    if (!isOpen()) {
        return event.key() == Qt::Key_Down && isPlain(event) && openByKey();
    }
    if (uses(event)) {
        useKey(event.key());
        return true;
    }
    if (!isPlain(event) || (event.key() != Qt::Key_Tab && !isReturn(event.key()))) {
        return false;
    }
    const QPointer<QLineEdit> alive = box_;
    if (currentRow() >= 0) {
        take(currentRow());
    } else {
        close();
    }
    return !alive;
}

void SuggestionList::useKey(int key) {
    switch (key) {
    case Qt::Key_Escape:
        return close();
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return take(currentRow());
    default:
        break;
    }
    if (isStale_) {
        return ask(Occasion::Asked); // the rows are those of the text before the last letter
    }
    const int count = static_cast<int>(rows_.size());
    const int page = view_->visibleRows();
    const int now = currentRow();
    switch (key) { // up from the first row and down from the last one lead back to the box
    case Qt::Key_Up:
        return choose(now < 0 ? count - 1 : now - 1);
    case Qt::Key_Down:
        return choose(now == count - 1 ? -1 : now + 1);
    case Qt::Key_PageUp:
        return choose(std::max(0, now - page));
    default:
        return choose(std::min(count - 1, now + page));
    }
}

bool SuggestionList::openByKey() {
    if (!mayOpen()) {
        return false;
    }
    ask(Occasion::Asked);
    return isOpen() || later_.isActive();
}

void replaceText(QLineEdit& box, const QString& text) {
    box.setCursorPosition(0); // moving the caret ends the undo step of the typed letters
    box.selectAll();
    box.insert(text);
}

} // namespace ambrel
