// The first rows of a file, and what each of its columns is taken for.
#pragma once

#include <QTableWidget>
#include <string>
#include <vector>

#include "address/AddressFile.h"

class QComboBox;

namespace host {

/// A list over each column says what the column holds; the user may choose otherwise.
class ColumnGrid : public QTableWidget {
    Q_OBJECT
public:
    explicit ColumnGrid(QWidget* parent = nullptr);

    void showFile(const ambrel::AddressFilePreview& preview);
    /// What the lists say, for every part: its column's name, or its number from 1 where that is not the only
    /// one of its name; or nothing.
    [[nodiscard]] ambrel::NamedColumns columns() const;

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    /// The user has chosen what a column holds.
    void chosen();

private:
    [[nodiscard]] QComboBox* list(const QString& column);
    void orderForTab();
    void take(const QComboBox& changed);

    std::vector<std::string> names_; // of the columns
    std::vector<QComboBox*> lists_;  // one for each column
};

} // namespace host
