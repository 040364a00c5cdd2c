// The small sign beside a box: is its text validated?
#pragma once

#include <QWidget>

class QLineEdit;

namespace host {

/// Follows the box's text and its Tag: a tick for a validated text, a warning for one that is not, a dot when
/// the box is empty or nothing validates it.
class ValidationMark : public QWidget {
    Q_OBJECT
public:
    enum class Kind { Checked, FreeText };
    enum class State { Nothing, Validated, NotValidated };

    ValidationMark(QLineEdit* box, Kind kind, QWidget* parent = nullptr);

    [[nodiscard]] State state() const { return state_; }
    /// Why the text is not validated; shown as long as it is not.
    void setReason(const QString& reason);
    [[nodiscard]] QSize sizeHint() const override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void follow();
    void paintTick(QPainter& painter, const QRectF& circle) const;
    void paintWarning(QPainter& painter, const QRectF& circle) const;

    QLineEdit* box_;
    Kind kind_;
    State state_ = State::Nothing;
    QString reason_;
};

} // namespace host
