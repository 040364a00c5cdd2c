// When an offer opens and closes, and its keys.
#include "form/PasteOffer.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QCursor>
#include <QKeyEvent>
#include <algorithm>
#include <utility>

#include "form/SecondClick.h"
#include "form/UnderBox.h"
#include "services/EventGuard.h"

namespace ambrel {
namespace {

constexpr qsizetype longestAddress = 400; // longer texts are something else

/// How many letters of a text are new in one piece.
qsizetype insertedLetters(const QString& before, const QString& now) {
    const qsizetype shorter = std::min(before.size(), now.size());
    qsizetype same = 0;
    while (same < shorter && before[same] == now[same]) {
        ++same;
    }
    qsizetype sameEnd = 0;
    while (sameEnd < shorter - same && before[before.size() - 1 - sameEnd] == now[now.size() - 1 - sameEnd]) {
        ++sameEnd;
    }
    return now.size() - same - sameEnd;
}

/// What was put into a text just before its caret. Of a selection that it replaced, letters at its beginning
/// may be taken for kept ones.
QString insertedPiece(const QString& before, const QString& now, qsizetype caret) {
    const qsizetype kept = before.size() - (now.size() - caret); // letters before the piece, at most
    if (kept < 0 || !before.endsWith(now.mid(caret))) {
        return now;
    }
    const auto [end, unused] =
        std::mismatch(now.begin(), now.begin() + std::min(kept, caret), before.begin());
    return now.mid(end - now.begin(), caret - (end - now.begin()));
}

/// Whether a key changes the text letter by letter.
bool typesOrDeletes(const QKeyEvent& event) {
    const bool isCommand = event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
    return event.key() == Qt::Key_Backspace || event.key() == Qt::Key_Delete ||
           (!isCommand && !event.text().isEmpty() && event.text().front().isPrint());
}

/// Whether a text that looks hardly changed holds what can be pasted: the same was pasted over it.
bool isPastedAgain(const QString& text) {
    const QString pasted = QGuiApplication::clipboard()->text();
    return pasted.size() > 1 && text.contains(pasted);
}

bool isPlain(const QKeyEvent& event) { return (event.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier; }

} // namespace

PasteOffer::PasteOffer(QLineEdit* box, Source source, Taker taker)
    : QObject(box), box_(box), source_(std::move(source)), taker_(std::move(taker)), now_(box->text()) {
    later_.setSingleShot(true);
    connect(&later_, &QTimer::timeout, this, [this] { ask(); });
    connect(box, &QLineEdit::textChanged, this, [this](const QString& text) {
        before_ = std::exchange(now_, text);
        if (!isTaking_ && text != pasted_) {
            close();
        }
    });
    connect(box, &QLineEdit::textEdited, this, [this](const QString& text) { edited(text); });
    box->installEventFilter(this);
}

PasteOffer::~PasteOffer() {
    if (isBoxWhole()) {
        close();
    }
    delete strip_;
}

bool PasteOffer::isOpen() const { return strip_ && strip_->isVisible(); }

/// A box that is being destroyed is not an edit box any more, but still gets events.
bool PasteOffer::isBoxWhole() const { return qobject_cast<QLineEdit*>(parent()) != nullptr; }

/// The window need not be active: something was dropped from another one.
bool PasteOffer::mayOpen() const {
    return isBoxWhole() && box_->isVisible() && box_->window()->focusWidget() == box_ && box_->isEnabled() &&
           !box_->isReadOnly() && !QApplication::activeModalWidget();
}

/// Emitted before or after the text is reported as changed, depending on the version of Qt. A text that undo
/// has brought back was left, or taken back, before.
void PasteOffer::edited(const QString& text) {
    const QString& before = now_ == text ? before_ : now_;
    if (isTaking_ || isTyping_ || text.size() > longestAddress || box_->isRedoAvailable()) {
        return;
    }
    if (insertedLetters(before, text) < 2 && !isPastedAgain(text)) {
        return;
    }
    pasted_ = text;
    piece_ = insertedPiece(before, text, box_->cursorPosition());
    later_.start(0);
}

void PasteOffer::ask() {
    if (!mayOpen()) {
        return;
    }
    const QString text = box_->text();
    std::optional<OfferTexts> texts;
    const QPointer<PasteOffer> alive = this;
    runGuarded([&] { texts = source_(text, piece_); });
    if (alive && texts && mayOpen() && box_->text() == text) {
        open(*texts);
    }
}

void PasteOffer::open(const OfferTexts& texts) {
    QWidget* const window = box_->window();
    if (strip_ && strip_->parentWidget() != window) {
        close();
        delete strip_; // the box has moved to another window
    }
    if (!strip_) {
        strip_ = new OfferStrip(*window);
        connect(strip_, &OfferStrip::accepted, this, [this] {
            new SecondClick(QCursor::pos()); // a double click must not press what lies under the strip
            accept();
        });
        connect(strip_, &OfferStrip::left, this, [this] {
            new SecondClick(QCursor::pos());
            close();
        });
    }
    const bool wasOpen = isOpen();
    strip_->setTexts(texts);
    strip_->showAt(*box_);
    if (!wasOpen) {
        qApp->installEventFilter(this); // the last one is the first to see keys, before a dialog's preview
        description_ = box_->accessibleDescription();
    }
    QStringList said{
        QStringLiteral("Lo pegado es una dirección entera; Intro rellena las casillas, Esc la deja")};
    for (const auto& [label, part] : texts.parts) {
        said << label + QLatin1Char(' ') + part;
    }
    said << texts.remarks.join(QLatin1Char(' ')) << description_;
    said.removeAll(QString());
    box_->setAccessibleDescription(said.join(QStringLiteral(". ")));
}

void PasteOffer::close() {
    later_.stop();
    if (!isOpen()) {
        return;
    }
    strip_->hide();
    qApp->removeEventFilter(this);
    box_->setAccessibleDescription(description_);
}

void PasteOffer::accept() {
    const Taker taker = taker_;
    const QPointer<PasteOffer> alive = this;
    close();
    isTaking_ = true;
    runGuarded(taker);
    if (alive) {
        isTaking_ = false;
    }
}

bool PasteOffer::eventFilter(QObject* watched, QEvent* event) {
    if (watched == box_) {
        return filterBox(*event);
    }
    if (!isOpen()) {
        return false;
    }
    switch (elsewhereEvent(*box_, *strip_, *watched, *event)) {
    case ElsewhereEvent::None:
        break;
    case ElsewhereEvent::Moved:
        strip_->showAt(*box_);
        break;
    case ElsewhereEvent::Left:
        close();
        break;
    }
    return false;
}

bool PasteOffer::filterBox(QEvent& event) {
    switch (event.type()) {
    case QEvent::ShortcutOverride:
        if (!uses(static_cast<const QKeyEvent&>(event))) {
            return false;
        }
        event.accept();
        return true;
    case QEvent::KeyRelease:
        isTyping_ = false;
        return false;
    case QEvent::KeyPress:
        return filterKey(static_cast<const QKeyEvent&>(event));
    case QEvent::Drop:
        QTimer::singleShot(0, this, [this] { askAboutDrop(); });
        return false;
    case QEvent::FocusOut:
        if (static_cast<const QFocusEvent&>(event).reason() != Qt::ActiveWindowFocusReason) {
            close();
        }
        return false;
    case QEvent::Move:
    case QEvent::Resize:
        if (isOpen()) {
            strip_->showAt(*box_);
        }
        return false;
    default:
        if (isOpen() && !mayOpen()) {
            close();
        }
        return false;
    }
}

/// True if the box must not receive the key.
bool PasteOffer::filterKey(const QKeyEvent& event) {
    isTyping_ = typesOrDeletes(event);
    if (!uses(event)) {
        return false;
    }
    if (event.key() == Qt::Key_Escape) {
        close();
    } else {
        accept();
    }
    return true;
}

/// The offer's keys go to the box with the keyboard.
void PasteOffer::askAboutDrop() {
    box_->activateWindow();
    box_->setFocus(Qt::OtherFocusReason);
    if (box_->text() == pasted_) {
        later_.start(0);
    }
}

bool PasteOffer::uses(const QKeyEvent& event) const {
    return isOpen() && isPlain(event) &&
           (event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter || event.key() == Qt::Key_Escape);
}

} // namespace ambrel
