// What the windows of the utilities are made of.
#pragma once

class QAbstractItemModel;
class QLabel;
class QPushButton;
class QSize;
class QString;
class QTableView;
class QWidget;

namespace host {

/// Between the parts of such a window and at its edges.
inline constexpr int windowMargin = 16;

/// A button that Return presses only when it has the focus.
[[nodiscard]] QPushButton* pushButton(const char* objectName, const QString& text, QWidget* parent);
/// A label of plain text, in as many lines as it needs.
[[nodiscard]] QLabel* wrappedLabel(const char* objectName, QWidget* parent);
/// A table of rows that are chosen as a whole; all of one height, so that any number of them costs nothing.
/// `name`: for those who hear it.
[[nodiscard]] QTableView* rowTable(const char* objectName, const QString& name, QAbstractItemModel& model,
                                   QWidget* parent);

/// Gives a window this size, or as much of it as its screen has room for.
void resizeWithinScreen(QWidget& window, QSize wanted);
/// Moves the rows of a window closer together where its screen, or a large font, leaves too little height.
void closeUpOnLowScreen(const QWidget& window);

} // namespace host
