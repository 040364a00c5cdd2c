// The totals of a validation as a picture: a bar for each verdict.
#pragma once

#include <QWidget>
#include <vector>

#include "address/AddressFile.h"

namespace host {

/// Painted with the palette of the window, light or dark. Screen readers read its rows as a description.
class VerdictChart : public QWidget {
    Q_OBJECT
public:
    explicit VerdictChart(QWidget* parent = nullptr);

    void setTotals(const ambrel::AddressFileTotals& totals);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    struct Bar {
        QString title, count; // the count with its share
        double share;         // of all rows
        bool isSettled;
    };

    [[nodiscard]] int lineHeight() const;
    [[nodiscard]] int widest(QString Bar::*text) const;

    std::vector<Bar> bars_; // of the verdicts that occur, settled ones first
};

} // namespace host
