// A window with the boxes of an address, filled in as a user does.
#pragma once

#include <QLineEdit>
#include <QWidget>
#include <memory>
#include <string>

#include "country/Questions.h"
#include "dbase/dataset/dataset.h"
#include "form/AddressBoxes.h"
#include "support/ScriptedMessages.h"

namespace country_tests {

class TypedForm {
public:
    enum class Keys { Typed, Pasted };

    TypedForm();

    /// Fills in the whole address and leaves it. Texts in Windows-1252.
    [[nodiscard]] Answer fillIn(const Question& question, const std::string& municipality, Keys keys);
    /// Writes a misspelt street and takes the suggestion that names the right one; not settled if there is
    /// none.
    [[nodiscard]] Answer takeSuggestion(const Question& question, const std::string& municipality,
                                        const std::string& misspelt);

private:
    using Box = ambrel::AddressBoxes::Box;
    void clear();
    void fillPlace(const Question& question, const std::string& municipality, Keys keys);
    void fill(QLineEdit* box, const std::string& text, Keys keys);
    [[nodiscard]] Answer answer();

    ambrel::test::ScriptedMessages noQuestions_; // none may come
    QWidget form_;
    ambrel::AddressBoxes::Boxes boxes_;
    std::unique_ptr<ambrel::AddressBoxes> address_;
    dbase::Dataset tagged_{"DB", "POSTAL", "CODIGO1"};
};

} // namespace country_tests
