// What the lists under the boxes of an address suggest.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "form/AddressBoxes.h"
#include "form/SuggestionList.h"
#include "suggest/Suggestions.h"

namespace ambrel {

class AddressValidation;

/// Suggests municipalities, and the streets of the municipality in the form; without one those of the postal
/// code or the province typed there. A chosen row goes into the form as a choice from the box's list does.
/// Not installed: internal to AddressBoxes.
class AddressSuggestions {
public:
    using Rows = SuggestionList::Rows;
    using Occasion = SuggestionList::Occasion;

    explicit AddressSuggestions(AddressValidation& validation) : validation_(validation) {}

    /// Uses the host's object; null suggests nothing.
    void use(std::shared_ptr<Suggestions> suggestions);

    [[nodiscard]] std::optional<Rows> rows(AddressBoxes::Box box, const QString& text, Occasion occasion);
    void take(AddressBoxes::Box box, const SuggestionRow& row);

private:
    [[nodiscard]] bool isSettled(AddressBoxes::Box box, const QString& text) const;
    [[nodiscard]] std::optional<Rows> municipalities(const std::string& text);
    [[nodiscard]] StreetQuery streetQuery(const std::string& text);
    [[nodiscard]] std::optional<Rows> streets(const std::string& text);

    AddressValidation& validation_;
    std::shared_ptr<Suggestions> suggestions_;
    bool isOwn_ = true; // made when it is needed
};

} // namespace ambrel
