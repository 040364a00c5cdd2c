// The strip under a box that shows an offered address.
#pragma once

#include <QFrame>
#include <QString>
#include <QStringList>
#include <utility>
#include <vector>

class QFormLayout;
class QLabel;
class QPushButton;

namespace ambrel {

/// What a strip says.
struct OfferTexts {
    std::vector<std::pair<QString, QString>> parts; // label and text
    QStringList remarks;
    bool isSettled = true;
};

/// Takes neither the keyboard nor the place of the active window. Not installed: internal to PasteOffer.
class OfferStrip : public QFrame {
    Q_OBJECT
public:
    explicit OfferStrip(QWidget& window);

    void setTexts(const OfferTexts& texts);
    /// Shows the strip under a box, or over it where there is more room, inside its screen.
    void showAt(const QWidget& box);

Q_SIGNALS:
    /// A click on one of its buttons.
    void accepted();
    void left();

private:
    QLabel* title_;
    QFormLayout* parts_;
    QLabel* remarks_;
    QPushButton *accept_, *leave_;
};

} // namespace ambrel
