// A dialog of one width, such as the small lists have.
#pragma once

#include <QObject>

class QDialog;
class QStatusBar;

namespace ambrel {

/// Keeps a dialog, which it lives with, at one width and above a least height; sizes in logical pixels. Both
/// grow with font and text where the controls, or their hints in the status bar, would be cut.
class FixedWidth : public QObject {
    Q_OBJECT
public:
    FixedWidth(QDialog& dialog, int width, int leastHeight, QStatusBar& bar);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void fit();

    QDialog& dialog_;
    QStatusBar& bar_;
    int width_;
    int leastHeight_;
};

} // namespace ambrel
