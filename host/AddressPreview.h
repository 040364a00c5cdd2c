// The address as it will be printed: one line below the form.
#pragma once

#include <QWidget>

class QLabel;

namespace host {

struct HostTable;

class AddressPreview : public QWidget {
    Q_OBJECT
public:
    explicit AddressPreview(QWidget* parent = nullptr);

    /// Shows the line of the table's row, pending changes included.
    void showRow(HostTable& table);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void makeRoom();

    /// Whether abbreviations of street types can be turned into names: without their table every line would
    /// bring up an error box.
    bool namesTypes_;
    QLabel* line_;
};

} // namespace host
