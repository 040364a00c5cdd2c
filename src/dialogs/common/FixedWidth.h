// A dialog of fixed width, such as the small lists.
#pragma once

#include <QObject>

class QDialog;
class QStatusBar;

namespace ambrel {

/// Keeps a dialog, whose lifetime it shares, at one width and above a minimum height; sizes in logical
/// pixels. Both grow with font and text if the controls, or their hints in the status bar, would be cut.
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
