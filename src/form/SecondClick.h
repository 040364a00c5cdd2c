// The second click of a double click on something that goes with the first one.
#pragma once

#include <QObject>
#include <QPoint>

namespace ambrel {

/// Swallows a click that follows at the same place within the time of a double click: it was not meant for
/// what lies there now. Deletes itself afterwards. Not installed: internal to SuggestionList and PasteOffer.
class SecondClick : public QObject {
public:
    explicit SecondClick(QPoint place);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QPoint place_; // on the screen
    bool isDown_ = false;
};

} // namespace ambrel
