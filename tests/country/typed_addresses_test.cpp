// The same addresses in the boxes of a form.
#include "country/Country.h"
#include "country/TypedForm.h"

#include "support/LongForm.h"

namespace country_tests {
namespace {

using TypedAddresses = Country;

TEST_F(TypedAddresses, AreRightWhenTheyArePasted) {
    TypedForm form;
    Score score;
    for (const Question& question : sample()) {
        if (isNameUnique(question)) {
            score.add(question, form.fillIn(question, municipality(question.place), TypedForm::Keys::Pasted));
        }
    }
    expectRight(score);
}

TEST_F(TypedAddresses, AreRightWhenEachKeyCompletesThem) {
    TypedForm form;
    Score score;
    for (const Question& question : sample(5)) {
        if (isNameUnique(question)) {
            score.add(question, form.fillIn(question, municipality(question.place), TypedForm::Keys::Typed));
        }
    }
    expectRight(score);
}

TEST_F(TypedAddresses, AreRightAfterASuggestionIsTaken) {
    TypedForm form;
    Score score;
    for (const Question& question : sample(10)) {
        if (isNameUnique(question) && question.wholeName.size() >= 8) {
            std::string misspelt = question.street;
            misspelt.erase(misspelt.size() / 2, 1);
            score.add(question, form.takeSuggestion(question, municipality(question.place), misspelt));
        }
    }
    expectRight(score);
}

} // namespace
} // namespace country_tests
