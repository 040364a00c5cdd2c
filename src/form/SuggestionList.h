// A list of suggestions under an edit box: what the user may have meant.
#pragma once

#include <QLineEdit>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QTimer>
#include <QVariant>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "AmbrelExport.h"

class QKeyEvent;

namespace ambrel {

class SuggestionView;

/// A row of a list of suggestions.
struct SuggestionRow {
    QString name;
    QString type = {};        // shown before the name
    QString place = {};       // the municipality of a street, the province of a municipality
    QString postalCodes = {}; // as shown
    std::vector<std::pair<int, int>> marks = {}; // letters of the name to be marked: first and how many
    QVariant value = {};                         // the host's own
};

/// Shows suggestions under any edit box while the user types there. It opens by itself when its source has
/// rows for what was typed, and on Down, which then chooses the first row. No row is current until Down, Up
/// or the mouse chooses one; Return, Tab and a click take the chosen row, and Return and Tab without one do
/// what they do without the list. Esc closes only the list. While it is open, PageUp and PageDown move in it
/// too, and no shortcut of the window gets these keys. The keyboard stays in the box. Screen readers announce
/// the list as the description of the box, and the chosen row.
///
/// The list looks for rows when a key is released, after handlers of KeyUpEvents: those may complete the text
/// first. A completed tail, selected at the end, does not count as typed.
class AMBREL_EXPORT SuggestionList : public QObject {
    Q_OBJECT
public:
    /// Best first.
    using Rows = std::vector<SuggestionRow>;
    /// Why rows are wanted: the user has typed, or has asked for the list.
    enum class Occasion { Typed, Asked };
    /// The rows for a text, best first; none keeps the list closed. Null means that they are not ready: the
    /// source is called again, a moment later, until they are. It must return within milliseconds; a source
    /// with more to do does a piece of it at each call. Runs inside runGuarded().
    using Source = std::function<std::optional<Rows>(const QString& text, Occasion occasion)>;
    /// Does what choosing a row means. Runs inside runGuarded().
    using Taker = std::function<void(const SuggestionRow& row)>;

    /// Owned by the box. Without a taker the row's name goes into the box.
    SuggestionList(QLineEdit* box, Source source, Taker taker = {});
    ~SuggestionList() override;

    /// Whether the user sees it.
    [[nodiscard]] bool isOpen() const;
    /// The rows shown last.
    [[nodiscard]] const Rows& rows() const { return rows_; }
    /// The chosen row; -1 if there is none.
    [[nodiscard]] int currentRow() const;
    /// Closes the list alone.
    void close();

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] bool isBoxWhole() const;
    [[nodiscard]] bool mayOpen() const;
    void typed();
    void ask(Occasion occasion);
    void open(Rows rows);
    void describe();
    void choose(int row);
    void take(int row);
    bool filterBox(QEvent& event);
    [[nodiscard]] bool uses(const QKeyEvent& event) const;
    bool filterKey(const QKeyEvent& event);
    void useKey(int key);
    bool openByKey();

    QLineEdit* box_; // owns this list
    Source source_;
    Taker taker_;
    QPointer<SuggestionView> view_; // belongs to the box's window, which may delete it
    Rows rows_;
    QTimer later_;                        // until the list asks, or asks again
    Occasion occasion_ = Occasion::Typed; // of the next question
    QString answered_;                    // the box's text for which the rows are
    bool isStale_ = false;                // the user has changed the text since
    bool isKeyDown_ = false, isTaking_ = false;
    QString description_; // of the box while the list is closed
};

/// Replaces the text of a box in one step, which Ctrl+Z undoes.
AMBREL_EXPORT void replaceText(QLineEdit& box, const QString& text);

} // namespace ambrel
