// Offers to take apart a whole address that was pasted into one box.
#pragma once

#include <QLineEdit>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QTimer>
#include <functional>
#include <optional>

#include "form/OfferStrip.h"

class QKeyEvent;

namespace ambrel {

/// Shows a strip under an edit box when its source makes an offer of a text that came in one piece: pasted
/// with any key, menu or mouse button, dropped, dictated. Return and its button accept; Escape, typing and
/// going elsewhere leave the text as it was pasted. The keyboard stays in the box. Screen readers announce
/// the offer as the description of the box. Not installed: internal to AddressBoxes.
class PasteOffer : public QObject {
    Q_OBJECT
public:
    /// What to offer for the text of the box, of which `piece` has just come; null offers nothing. Runs
    /// inside runGuarded().
    using Source = std::function<std::optional<OfferTexts>(const QString& text, const QString& piece)>;
    /// Does what accepting means. Runs inside runGuarded().
    using Taker = std::function<void()>;

    /// Owned by the box.
    PasteOffer(QLineEdit* box, Source source, Taker taker);
    ~PasteOffer() override;

    /// Whether the user sees it.
    [[nodiscard]] bool isOpen() const;
    /// Leaves the text as it is.
    void close();

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] bool isBoxWhole() const;
    [[nodiscard]] bool mayOpen() const;
    void edited(const QString& text);
    void ask();
    void open(const OfferTexts& texts);
    void accept();
    bool filterBox(QEvent& event);
    bool filterKey(const QKeyEvent& event);
    void askAboutDrop();
    [[nodiscard]] bool uses(const QKeyEvent& event) const;

    QLineEdit* box_; // owns this offer
    Source source_;
    Taker taker_;
    QPointer<OfferStrip> strip_; // belongs to the box's window, which may delete it
    QTimer later_;               // after the handlers of the paste
    QString before_, now_;       // the texts of the box before its last change and after it
    QString pasted_, piece_;     // the text that the offer is about, and what came last of it
    bool isTaking_ = false, isTyping_ = false;
    QString description_; // of the box while there is no offer
};

} // namespace ambrel
