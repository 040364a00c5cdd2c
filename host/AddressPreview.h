// The address as it will be printed: one line below the form, to be copied from there.
#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

namespace host {

struct HostTable;

class AddressPreview : public QWidget {
    Q_OBJECT
public:
    explicit AddressPreview(QWidget* parent = nullptr);

    /// Shows the line of the table's row, pending changes included.
    void showRow(HostTable& table);
    /// Puts the whole line on the clipboard; nothing if it is empty.
    void copy();

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    /// The whole line is on the clipboard.
    void copied();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void makeRoom();
    void copySelected();
    void openMenu(const QPoint& place);

    /// Whether abbreviations of street types can be turned into names: without their table every line would
    /// bring up an error box.
    bool namesTypes_;
    QLabel* line_;
    QPushButton* copy_;
};

} // namespace host
